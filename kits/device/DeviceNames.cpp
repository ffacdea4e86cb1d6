// Names of devices as they are handed out.

#include "device/DeviceNames.h"

#include <string.h>

#include "support/UTF8Characters.h"

namespace device {

std::string fitting(const std::string& text, size_t size)
{
    return std::string(BPrivate::utf8_fitting(text, size));
}

status_t copy_name(const std::vector<std::string>& names, int32 index, char* name, size_t size)
{
    if (name == nullptr || size == 0)
        return B_BAD_VALUE;
    if (index < 0 || static_cast<size_t>(index) >= names.size())
        return B_BAD_INDEX;
    strcpy(name, fitting(names[index], size - 1).c_str());
    return B_OK;
}

}  // namespace device
