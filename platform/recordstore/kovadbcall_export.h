#pragma once

#if defined(KOVADBCALL_STATIC)
#define KOVADBCALL_API
#elif defined(_WIN32) && defined(KOVADBCALL_BUILDING)
#define KOVADBCALL_API __declspec(dllexport)
#elif defined(_WIN32)
#define KOVADBCALL_API __declspec(dllimport)
#else
#define KOVADBCALL_API __attribute__((visibility("default")))
#endif
