#ifndef SERVER_QT_TEXT_H
#define SERVER_QT_TEXT_H

// The program's texts as Qt has them. A byte that is no UTF-8 is shown as everywhere else.

#include <QString>

#include <string_view>

#include "support/ValidUTF8.h"

namespace server {

inline QString qt_text(std::string_view text)
{
    return QString::fromStdString(BPrivate::valid_utf8(text));
}

}  // namespace server

#endif  // SERVER_QT_TEXT_H
