# Four-character message codes are the platform's idiom, so multichar stays quiet.
add_compile_options(-Wall -Wextra -Wno-multichar)
