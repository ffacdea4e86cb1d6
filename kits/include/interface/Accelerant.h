#ifndef _ACCELERANT_H
#define _ACCELERANT_H

/* What screens and graphics cards tell of themselves, as BScreen gives it. */

#include <GraphicsDefs.h>
#include <SupportDefs.h>

/* display_timing::flags */
enum {
    B_BLANK_PEDESTAL = 1 << 27,
    B_TIMING_INTERLACED = 1 << 28,
    B_POSITIVE_HSYNC = 1 << 29,
    B_POSITIVE_VSYNC = 1 << 30,
    B_SYNC_ON_GREEN = -2147483647 - 1
};

/* display_mode::flags */
enum {
    B_SCROLL = 1 << 0,
    B_8_BIT_DAC = 1 << 1,
    B_HARDWARE_CURSOR = 1 << 2,
    B_PARALLEL_ACCESS = 1 << 3,
    B_DPMS = 1 << 4,
    B_IO_FB_NA = 1 << 5
};

/* Power states of a screen. */
enum { B_DPMS_ON = 1 << 0, B_DPMS_STAND_BY = 1 << 1, B_DPMS_SUSPEND = 1 << 2, B_DPMS_OFF = 1 << 3 };

/* Pixels and lines; the clock in kHz. */
typedef struct {
    uint32 pixel_clock;
    uint16 h_display;
    uint16 h_sync_start;
    uint16 h_sync_end;
    uint16 h_total;
    uint16 v_display;
    uint16 v_sync_start;
    uint16 v_sync_end;
    uint16 v_total;
    uint32 flags;
} display_timing;

typedef struct {
    display_timing timing;
    uint32 space; /* color_space */
    uint16 virtual_width;
    uint16 virtual_height;
    uint16 h_display_start;
    uint16 v_display_start;
    uint32 flags;
} display_mode;

typedef struct {
    uint32 version;
    char name[32];
    char chipset[32];
    char serial_no[32];
    uint32 memory;
    uint32 dac_speed;
} accelerant_device_info;

typedef struct {
    uint16 h_res;
    uint16 h_sync_min;
    uint16 h_sync_max;
    uint16 h_blank_min;
    uint16 h_blank_max;
    uint16 v_res;
    uint16 v_sync_min;
    uint16 v_sync_max;
    uint16 v_blank_min;
    uint16 v_blank_max;
} display_timing_constraints;

/* Sizes in centimetres, frequencies in Hz; 0 for what is not known. */
typedef struct {
    uint32 version;
    char vendor[128];
    char name[128];
    char serial_number[128];
    uint32 product_id;
    struct {
        uint16 week;
        uint16 year;
    } produced;
    float width;
    float height;
    uint32 min_horizontal_frequency;
    uint32 max_horizontal_frequency;
    uint32 min_vertical_frequency;
    uint32 max_vertical_frequency;
    uint32 max_pixel_clock;
} monitor_info;

#endif  // _ACCELERANT_H
