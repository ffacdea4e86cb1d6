#ifndef DEVICE_DEVICE_NAMES_H
#define DEVICE_DEVICE_NAMES_H

#include <string>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] device {

// Text cut to at most `size` bytes at the end of a character.
std::string fitting(const std::string& text, size_t size);

// Answers a name of a list as GetDeviceName() does.
status_t copy_name(const std::vector<std::string>& names, int32 index, char* name, size_t size);

}  // namespace device

#endif  // DEVICE_DEVICE_NAMES_H
