/* Operating-system types of the interface, and the marks of functions that cross it. */
#ifndef CMPIOS_H
#define CMPIOS_H

#if defined(_WIN32)
#define CMPI_THREAD_CDECL __stdcall
#define CMPI_EXPORT __declspec(dllexport)
typedef unsigned CMPI_THREAD_RETURN; /* joinThread stores 4 bytes here */
#else
#define CMPI_THREAD_CDECL
#if defined(__GNUC__)
#define CMPI_EXPORT __attribute__((visibility("default")))
#else
#define CMPI_EXPORT
#endif
typedef void* CMPI_THREAD_RETURN;
#endif

#if defined(__cplusplus)
#define CMPI_EXTERN_C extern "C" CMPI_EXPORT
#else
#define CMPI_EXTERN_C CMPI_EXPORT
#endif

/* Opaque handles; NULL means failure. */
typedef void* CMPI_THREAD_TYPE;
typedef void* CMPI_MUTEX_TYPE;
typedef void* CMPI_COND_TYPE;
typedef unsigned int CMPI_THREAD_KEY_TYPE;

#ifdef __cplusplus
extern "C" {
#endif

struct timespec;
typedef CMPI_THREAD_RETURN(CMPI_THREAD_CDECL* CMPIThreadFunc)(void* parm);
typedef void (*CMPIThreadOnceFunc)(void);
typedef void (*CMPIThreadKeyCleanupFunc)(void* value);

#ifdef __cplusplus
}
#endif

#endif
