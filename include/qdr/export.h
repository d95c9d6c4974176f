#pragma once

// Symbols of the public interface. Everything else in the library is hidden.
#if defined(_WIN32)
#if defined(QDR_BUILDING)
#define QDR_EXPORT __declspec(dllexport)
#else
#define QDR_EXPORT __declspec(dllimport)
#endif
#else
#define QDR_EXPORT __attribute__((visibility("default")))
#endif
