// Handing work to the clipboard's thread. Any thread.

#include "server/qt/WaitingClipboard.h"

#include <memory>
#include <utility>

namespace server {

status_t WaitingClipboard::Read(const std::vector<std::string>& types, ClipboardForm* form)
{
    struct Result {
        status_t status = B_ERROR;
        ClipboardForm form;
    };
    auto result = std::make_shared<Result>();
    if (!Call([=, this] { result->status = ReadNow(types, &result->form); }))
        return B_TIMED_OUT;
    *form = std::move(result->form);
    return result->status;
}

status_t WaitingClipboard::Write(ClipboardForms forms, const uint32* expected, uint32* changes)
{
    struct Order {
        ClipboardForms forms;
        std::optional<uint32> expected;
        status_t status = B_ERROR;
        uint32 changes = 0;
    };
    auto order = std::make_shared<Order>();
    order->forms = std::move(forms);
    if (expected != nullptr)
        order->expected = *expected;
    const bool done = Call([=, this] {
        order->status = WriteNow(std::move(order->forms), order->expected, &order->changes);
    });
    if (!done)
        return B_TIMED_OUT;
    *changes = order->changes;
    return order->status;
}

}  // namespace server
