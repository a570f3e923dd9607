// Symbol visibility for the public interface of the library.
#ifndef VELD_EXPORT_H_
#define VELD_EXPORT_H_

#if defined(_WIN32) && !defined(VELD_STATIC_LINK)
#if defined(VELD_BUILDING_LIBRARY)
#define VELD_EXPORT __declspec(dllexport)
#else
#define VELD_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VELD_EXPORT __attribute__((visibility("default")))
#else
#define VELD_EXPORT
#endif

#endif  // VELD_EXPORT_H_
