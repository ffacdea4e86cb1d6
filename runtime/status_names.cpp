// The system's status codes by name. Any thread.

#include "runtime/status_names.h"

#include <E-mail.h>
#include <Errors.h>

#include <string.h>

#define ROW(code)   \
    {               \
        code, #code \
    }
static const struct {
    status_t status;
    const char* name;
} kNames[] = {
    ROW(B_NO_MEMORY),
    ROW(B_IO_ERROR),
    ROW(B_PERMISSION_DENIED),
    ROW(B_BAD_INDEX),
    ROW(B_BAD_TYPE),
    ROW(B_BAD_VALUE),
    ROW(B_MISMATCHED_VALUES),
    ROW(B_NAME_NOT_FOUND),
    ROW(B_NAME_IN_USE),
    ROW(B_TIMED_OUT),
    ROW(B_INTERRUPTED),
    ROW(B_WOULD_BLOCK),
    ROW(B_CANCELED),
    ROW(B_NO_INIT),
    ROW(B_BUSY),
    ROW(B_NOT_ALLOWED),
    ROW(B_BAD_DATA),
    ROW(B_ERROR),
    ROW(B_BAD_SEM_ID),
    ROW(B_NO_MORE_SEMS),
    ROW(B_BAD_THREAD_ID),
    ROW(B_NO_MORE_THREADS),
    ROW(B_BAD_THREAD_STATE),
    ROW(B_BAD_TEAM_ID),
    ROW(B_NO_MORE_TEAMS),
    ROW(B_BAD_PORT_ID),
    ROW(B_NO_MORE_PORTS),
    ROW(B_BAD_IMAGE_ID),
    ROW(B_BAD_ADDRESS),
    ROW(B_NOT_AN_EXECUTABLE),
    ROW(B_MISSING_LIBRARY),
    ROW(B_MISSING_SYMBOL),
    ROW(B_BAD_REPLY),
    ROW(B_DUPLICATE_REPLY),
    ROW(B_MESSAGE_TO_SELF),
    ROW(B_BAD_HANDLER),
    ROW(B_ALREADY_RUNNING),
    ROW(B_LAUNCH_FAILED),
    ROW(B_AMBIGUOUS_APP_LAUNCH),
    ROW(B_UNKNOWN_MIME_TYPE),
    ROW(B_BAD_SCRIPT_SYNTAX),
    ROW(B_LAUNCH_FAILED_NO_RESOLVE_LINK),
    ROW(B_LAUNCH_FAILED_EXECUTABLE),
    ROW(B_LAUNCH_FAILED_APP_NOT_FOUND),
    ROW(B_LAUNCH_FAILED_APP_IN_TRASH),
    ROW(B_LAUNCH_FAILED_NO_PREFERRED_APP),
    ROW(B_LAUNCH_FAILED_FILES_APP_NOT_FOUND),
    ROW(B_BAD_MIME_SNIFFER_RULE),
    ROW(B_NOT_A_MESSAGE),
    ROW(B_SHUTDOWN_CANCELLED),
    ROW(B_SHUTTING_DOWN),
    ROW(B_FILE_ERROR),
    ROW(B_FILE_EXISTS),
    ROW(B_ENTRY_NOT_FOUND),
    ROW(B_NAME_TOO_LONG),
    ROW(B_NOT_A_DIRECTORY),
    ROW(B_DIRECTORY_NOT_EMPTY),
    ROW(B_DEVICE_FULL),
    ROW(B_READ_ONLY_DEVICE),
    ROW(B_IS_A_DIRECTORY),
    ROW(B_NO_MORE_FDS),
    ROW(B_CROSS_DEVICE_LINK),
    ROW(B_LINK_LIMIT),
    ROW(B_BUSTED_PIPE),
    ROW(B_UNSUPPORTED),
    ROW(B_PARTITION_TOO_SMALL),
    ROW(B_MAIL_NO_DAEMON),
    ROW(B_MAIL_UNKNOWN_USER),
    ROW(B_MAIL_UNKNOWN_HOST),
    ROW(B_MAIL_ACCESS_ERROR),
    ROW(B_MAIL_UNKNOWN_FIELD),
    ROW(B_MAIL_NO_RECIPIENT),
    ROW(B_MAIL_INVALID_MAIL),
};
#undef ROW

const char* status_name(status_t status)
{
    for (const auto& row : kNames) {
        if (row.status == status)
            return row.name;
    }
    return strerror(status);
}
