#ifndef _KERNEL_KIT_H
#define _KERNEL_KIT_H

// Everything of the Kernel Kit.

#include <fs_attr.h>
#include <fs_index.h>
#include <fs_info.h>
#include <image.h>
#include <OS.h>
#include <scheduler.h>

#endif  // _KERNEL_KIT_H
