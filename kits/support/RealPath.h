#ifndef SUPPORT_REAL_PATH_H
#define SUPPORT_REAL_PATH_H

#include <stdlib.h>

#include <memory>
#include <string>

namespace BPrivate {

// The absolute path without links; empty, with the host's number in errno, if it leads nowhere.
inline std::string real_path(const std::string& path)
{
    const std::unique_ptr<char, decltype(&free)> real(realpath(path.c_str(), nullptr), &free);
    return real != nullptr ? real.get() : "";
}

}  // namespace BPrivate

#endif  // SUPPORT_REAL_PATH_H
