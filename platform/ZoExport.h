// ZO_API marks what the shared library exports. The library is built with hidden symbols, so a
// class or function that users call must carry it; everything else stays private to libzo / zo.dll.
#pragma once

#if defined(_WIN32)
#  if defined(ZO_BUILDING_LIBRARY)
#    define ZO_API __declspec(dllexport)
#  else
#    define ZO_API __declspec(dllimport)
#  endif
// Class templates are instantiated in the user's program too, so on Windows they are never marked
// as a whole; the instantiations the library owns are exported one by one.
#  define ZO_TEMPLATE_API
// mingw cannot attach dllexport to an explicit instantiation of a template that is already
// defined, so on Windows the library's instantiations are not declared extern: a program compiles
// its own copy of their inline code. Classes whose template statics must be unique (the library's
// singletons) hide the template's accessors behind exported functions of their own instead.
#  define ZO_INSTANCE_API
#  define ZO_EXTERN_TEMPLATE(...)
#else
#  define ZO_API __attribute__((visibility("default")))
// On ELF a template marked visible unifies its statics across the library and the program.
#  define ZO_TEMPLATE_API __attribute__((visibility("default")))
#  define ZO_INSTANCE_API
// Declares an instantiation that the library compiles and exports, so that programs use its copy.
#  define ZO_EXTERN_TEMPLATE(...) extern template __VA_ARGS__;
#endif
