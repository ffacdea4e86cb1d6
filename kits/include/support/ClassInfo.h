#ifndef _CLASSINFO_H
#define _CLASSINFO_H

#include <typeinfo>

// What a pointer really points at.
#define class_name(object) ((object) != nullptr ? typeid(*(object)).name() : nullptr)
#define cast_as(object, class) (dynamic_cast<class*>(object))
#define is_kind_of(object, class) (dynamic_cast<class*>(object) != nullptr)
#define is_instance_of(object, class) ((object) != nullptr && typeid(*(object)) == typeid(class))

#endif  // _CLASSINFO_H
