#ifndef _APPDEFS_H
#define _APPDEFS_H

#include <SupportDefs.h>

class BCursor;

enum system_message_code {
    B_ABOUT_REQUESTED = 0x5F414252,       // '_ABR'
    B_WINDOW_ACTIVATED = 0x5F414354,      // '_ACT'
    B_APP_ACTIVATED = 0x5F414354,         // '_ACT'
    B_ARGV_RECEIVED = 0x5F415247,         // '_ARG'
    B_QUIT_REQUESTED = 0x5F515251,        // '_QRQ'
    B_CLOSE_REQUESTED = 0x5F515251,       // '_QRQ'
    B_CANCEL = 0x5F434E43,                // '_CNC'
    B_INVALIDATE = 0x5F49564C,            // '_IVL'
    B_KEY_DOWN = 0x5F4B5944,              // '_KYD'
    B_KEY_UP = 0x5F4B5955,                // '_KYU'
    B_UNMAPPED_KEY_DOWN = 0x5F554B44,     // '_UKD'
    B_UNMAPPED_KEY_UP = 0x5F554B55,       // '_UKU'
    B_KEY_MAP_LOADED = 0x5F4B4D4C,        // '_KML'
    B_LAYOUT_WINDOW = 0x5F4C4159,         // '_LAY'
    B_MODIFIERS_CHANGED = 0x5F4D4348,     // '_MCH'
    B_MINIMIZE = 0x5F574D4E,              // '_WMN'
    B_MOUSE_DOWN = 0x5F4D444E,            // '_MDN'
    B_MOUSE_MOVED = 0x5F4D4D56,           // '_MMV'
    B_MOUSE_ENTER_EXIT = 0x5F4D4558,      // '_MEX'
    B_MOUSE_IDLE = 0x5F4D5349,            // '_MSI'
    B_MOUSE_UP = 0x5F4D5550,              // '_MUP'
    B_MOUSE_WHEEL_CHANGED = 0x5F4D5743,   // '_MWC'
    B_OPEN_IN_WORKSPACE = 0x5F4F5753,     // '_OWS'
    B_PACKAGE_UPDATE = 0x5F504B55,        // '_PKU'
    B_PRINTER_CHANGED = 0x5F504348,       // '_PCH'
    B_PULSE = 0x5F50554C,                 // '_PUL'
    B_READY_TO_RUN = 0x5F525452,          // '_RTR'
    B_REFS_RECEIVED = 0x5F525243,         // '_RRC'
    B_RELEASE_OVERLAY_LOCK = 0x5F524F56,  // '_ROV'
    B_ACQUIRE_OVERLAY_LOCK = 0x5F414F56,  // '_AOV'
    B_SCREEN_CHANGED = 0x5F534348,        // '_SCH'
    B_VALUE_CHANGED = 0x5F564348,         // '_VCH'
    B_TRANSLATOR_ADDED = 0x5F415254,      // '_ART'
    B_TRANSLATOR_REMOVED = 0x5F525254,    // '_RRT'
    B_DELETE_TRANSLATOR = 0x5F445254,     // '_DRT'
    B_VIEW_MOVED = 0x5F564D56,            // '_VMV'
    B_VIEW_RESIZED = 0x5F565253,          // '_VRS'
    B_WINDOW_MOVED = 0x5F574D56,          // '_WMV'
    B_WINDOW_RESIZED = 0x5F575253,        // '_WRS'
    B_WORKSPACES_CHANGED = 0x5F574347,    // '_WCG'
    B_WORKSPACE_ACTIVATED = 0x5F574143,   // '_WAC'
    B_ZOOM = 0x5F575A4D,                  // '_WZM'
    B_COLORS_UPDATED = 0x5F434C55,        // '_CLU'
    B_FONTS_UPDATED = 0x5F464E55,         // '_FNU'
    B_TRACKER_ADDON_MESSAGE = 0x5F54414D  // '_TAM'
};

enum command_code {
    B_SET_PROPERTY = 0x50534554,            // 'PSET'
    B_GET_PROPERTY = 0x50474554,            // 'PGET'
    B_CREATE_PROPERTY = 0x50435254,         // 'PCRT'
    B_DELETE_PROPERTY = 0x5044454C,         // 'PDEL'
    B_COUNT_PROPERTIES = 0x50434E54,        // 'PCNT'
    B_EXECUTE_PROPERTY = 0x50455845,        // 'PEXE'
    B_GET_SUPPORTED_SUITES = 0x53554954,    // 'SUIT'
    B_UNDO = 0x554E444F,                    // 'UNDO'
    B_REDO = 0x5245444F,                    // 'REDO'
    B_CUT = 0x43435554,                     // 'CCUT'
    B_COPY = 0x434F5059,                    // 'COPY'
    B_PASTE = 0x50535445,                   // 'PSTE'
    B_SELECT_ALL = 0x53414C4C,              // 'SALL'
    B_SAVE_REQUESTED = 0x53415645,          // 'SAVE'
    B_MESSAGE_NOT_UNDERSTOOD = 0x4D4E4F54,  // 'MNOT'
    B_NO_REPLY = 0x4E4F4E45,                // 'NONE'
    B_REPLY = 0x52504C59,                   // 'RPLY'
    B_SIMPLE_DATA = 0x44415441,             // 'DATA'
    B_MIME_DATA = 0x4D494D45,               // 'MIME'
    B_ARCHIVED_OBJECT = 0x41524356,         // 'ARCV'
    B_UPDATE_STATUS_BAR = 0x53425550,       // 'SBUP'
    B_RESET_STATUS_BAR = 0x53425253,        // 'SBRS'
    B_NODE_MONITOR = 0x4E444D4E,            // 'NDMN'
    B_QUERY_UPDATE = 0x51555044,            // 'QUPD'
    B_ENDORSABLE = 0x454E444F,              // 'ENDO'
    B_COPY_TARGET = 0x44444350,             // 'DDCP'
    B_MOVE_TARGET = 0x44444D56,             // 'DDMV'
    B_TRASH_TARGET = 0x4444524D,            // 'DDRM'
    B_LINK_TARGET = 0x44444C4E,             // 'DDLN'
    B_INPUT_DEVICES_CHANGED = 0x49444348,   // 'IDCH'
    B_INPUT_METHOD_EVENT = 0x494D4556,      // 'IMEV'
    B_WINDOW_MOVE_TO = 0x57444D54,          // 'WDMT'
    B_WINDOW_MOVE_BY = 0x57444D42,          // 'WDMB'
    B_SILENT_RELAUNCH = 0x4152454C,         // 'AREL'
    B_OBSERVER_NOTICE_CHANGE = 0x4E544348,  // 'NTCH'
    B_CONTROL_INVOKED = 0x4349564B,         // 'CIVK'
    B_CONTROL_MODIFIED = 0x434D4F44         // 'CMOD'
};

// Old cursors are 68 bytes: size 16, depth 1, hot spot y and x, 32 bytes image, 32 bytes mask.
extern const unsigned char B_HAND_CURSOR[];
extern const unsigned char B_I_BEAM_CURSOR[];
extern const BCursor* B_CURSOR_SYSTEM_DEFAULT;
extern const BCursor* B_CURSOR_I_BEAM;

#endif  // _APPDEFS_H
