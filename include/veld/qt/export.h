#ifndef VELD_QT_EXPORT_H_
#define VELD_QT_EXPORT_H_

#if defined(_WIN32) && !defined(VELD_QT_STATIC_LINK)
#if defined(VELD_QT_BUILDING_LIBRARY)
#define VELD_QT_EXPORT __declspec(dllexport)
#else
#define VELD_QT_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VELD_QT_EXPORT __attribute__((visibility("default")))
#else
#define VELD_QT_EXPORT
#endif

#endif  // VELD_QT_EXPORT_H_
