#pragma once

namespace NZELVOR20 {

/// What went wrong in a framework operation. The numbers are part of the interface: hosts print
/// and compare them.
enum EVORStatusCode : int {
  eVORSuccess = 0,
  eVORFailed = 1,               ///< a general failure, no closer reason is known
  eVORNotFound = 2,             ///< no such instance, file or namespace
  eVORNotSupported = 3,         ///< the operation is not offered by this implementation
  eVOROutOfMemory = 4,          ///< a buffer could not be allocated
  eVORInvalidParameter = 5,     ///< an argument has no meaning here
  eVORInvalidClass = 6,         ///< no such class
  eVORAccessDenied = 7,         ///< refused by the operating system or a provider
  eVORTypeMismatch = 8,         ///< a value cannot be read as the type asked for
  eVORAlreadyExists = 9,        ///< the object to be made is there already
  eVORNoSuchProperty = 10,      ///< the class declares no such property
  eVORMethodNotFound = 11,      ///< the class declares no such method, or nobody serves it
  eVORMethodNotAvailable = 12,  ///< the provider cannot carry the method out now
  eVORInvalidNamespace = 13,    ///< no such namespace
  eVORProviderFailed = 14,      ///< a provider could not be loaded, or answered with garbage
  eVORInvalidQuery = 15         ///< a query or its language is not understood
};

}  // namespace NZELVOR20
