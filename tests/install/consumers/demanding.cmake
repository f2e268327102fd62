# What a project may have set for all that lies below it, the library included.
add_compile_options(-fno-exceptions -fno-rtti -ffinite-math-only)
