#ifndef _CLASSINFO_H
#define _CLASSINFO_H

// macro class_name(object)
// macro cast_as(object, class)
// macro is_kind_of(object, class)
// macro is_instance_of(object, class)

#endif  // _CLASSINFO_H
