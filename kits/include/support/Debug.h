#ifndef _DEBUG_H
#define _DEBUG_H

// macro SET_DEBUG_ENABLED(FLAG)
// macro IS_DEBUG_ENABLED()
// macro SERIAL_PRINT(ARGS)
// macro PRINT(ARGS)
// macro PRINT_OBJECT(OBJ)
// macro TRACE()
// macro SERIAL_TRACE()
// macro DEBUGGER(MSG)
// macro ASSERT(E)
// macro ASSERT_WITH_MESSAGE(expr, msg)
// macro TRESPASS()
// macro DEBUG_ONLY(x)
// macro STATIC_ASSERT(x)

#endif  // _DEBUG_H
