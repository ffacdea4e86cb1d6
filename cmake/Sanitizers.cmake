# PLINTH_SANITIZE names one sanitizer set for everything in the tree: "address,undefined" or "thread".
set(PLINTH_SANITIZE "" CACHE STRING "sanitizers for all targets")
if(PLINTH_SANITIZE)
    add_compile_options(-fsanitize=${PLINTH_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${PLINTH_SANITIZE})
    if(PLINTH_SANITIZE MATCHES undefined)
        add_compile_options(-fno-sanitize=vptr)
    endif()
endif()
