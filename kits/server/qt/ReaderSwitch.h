#ifndef SERVER_QT_READER_SWITCH_H
#define SERVER_QT_READER_SWITCH_H

// Tells when the desktop says that somebody reads the screen, or nobody does any more. Qt asks for
// that but once, when the service of the readers comes.

#include <functional>
#include <memory>
#include <string>

namespace server {

// As long as it lives, on the thread that made it, whose loop has to be GLib's.
class ReaderSwitch {
public:
    // Called with what the desktop says whenever that is another than before; it begins with
    // nobody. Readers are on a bus of their own, at `address`; "" if they came with the service,
    // when Qt asks itself.
    using Switched = std::function<void(bool on, const std::string& address)>;
    explicit ReaderSwitch(Switched switched);
    ~ReaderSwitch();

private:
    class Watch;  // GLib's names are not for who includes Qt's

    std::unique_ptr<Watch> fWatch;
};

// True if the user's bus takes connections and does not answer them.
bool bus_is_silent();

}  // namespace server

#endif  // SERVER_QT_READER_SWITCH_H
