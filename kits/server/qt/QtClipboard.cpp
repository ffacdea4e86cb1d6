// Work on Qt's clipboard, carried out by the server's thread while the caller waits for a while.

#include "server/qt/QtClipboard.h"

#include <QGuiApplication>
#include <QMimeData>

#include <chrono>
#include <future>
#include <utility>

#include "server/screen/Stage.h"
#include "server/qt/QtDisplay.h"

namespace server {

static const char* const kQtText = "text/plain;charset=utf-8";

QtClipboard::QtClipboard(QtDisplay* display, QObject* context, QClipboard::Mode mode)
    : fDisplay(display), fMode(mode)
{
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::changed, context,
                     [this](QClipboard::Mode changed) {
                         if (changed == fMode)
                             _Changed();
                     });
}

void QtClipboard::_Changed()
{
    fChanges++;
    std::function<void()> listener;
    {
        std::lock_guard guard(fMutex);
        listener = fListener;
    }
    if (listener)
        listener();
}

// False if the work was not done in time; it may be later, and owns all that it needs.
bool QtClipboard::Call(std::function<void()> work)
{
    using Sign = std::promise<void>;
    auto begun = std::make_shared<Sign>(), done = std::make_shared<Sign>();
    std::future<void> begins = begun->get_future(), ends = done->get_future();
    {
        StageLock lock;
        if (!fDisplay->Post([work = std::move(work), begun, done] {
                begun->set_value();
                work();
                done->set_value();
            }))
            return false;
    }
    const auto comes = [](const std::future<void>& sign, bigtime_t patience) {
        return sign.wait_for(std::chrono::microseconds(patience)) == std::future_status::ready;
    };
    return comes(begins, kScreenPatience) && comes(ends, kClipboardPatience);
}

QMimeData* mime_data_of(const ClipboardForms& forms)
{
    auto* data = new QMimeData;
    for (const ClipboardForm& form : forms) {
        const QByteArray bytes(form.bytes.data(), qsizetype(form.bytes.size()));
        if (form.type == kTextForm)
            data->setData(QLatin1String(kQtText), bytes);
        data->setData(QString::fromStdString(form.type), bytes);
    }
    return data;
}

static bool read_form(const QMimeData& data, const std::string& type, std::string* bytes)
{
    const QString name = QString::fromStdString(type);
    const bool is_text = type == kTextForm;
    if (is_text && data.hasFormat(QLatin1String(kQtText)))
        *bytes = data.data(QLatin1String(kQtText)).toStdString();
    else if (is_text && data.hasText())
        *bytes = data.text().toStdString();
    else if (!is_text && data.hasFormat(name))
        *bytes = data.data(name).toStdString();
    else
        return false;
    return true;
}

status_t QtClipboard::ReadNow(const std::vector<std::string>& types, ClipboardForm* form)
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData(fMode);
    for (const std::string& type : types) {
        if (data != nullptr && read_form(*data, type, &form->bytes)) {
            form->type = type;
            return B_OK;
        }
    }
    return B_ENTRY_NOT_FOUND;
}

status_t QtClipboard::WriteNow(ClipboardForms forms, std::optional<uint32> expected,
                               uint32* changes)
{
    const uint32 before = fChanges;
    if (expected.value_or(before) != before)
        return B_ERROR;
    QGuiApplication::clipboard()->setMimeData(mime_data_of(forms), fMode);
    if (fChanges == before)
        _Changed();
    *changes = fChanges;
    return B_OK;
}

void QtClipboard::SetListener(std::function<void()> listener)
{
    std::lock_guard guard(fMutex);
    fListener = std::move(listener);
}

}  // namespace server
