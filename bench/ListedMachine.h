#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>

#include "substitute/vorcore/inmem/InmemNamespace.h"

/// An in-memory namespace with `associations` associations, a multiple of `kServices`: one of each
/// service with each element. "ServiceProvided" of every other one contains "Service1-", so that a
/// fragment can tell the halves apart.
boost::shared_ptr<NZELVOR20::TInmemNamespace> makeListedMachine(std::size_t associations);

/// An in-memory namespace with `records` completion records of one service; the last one belongs to
/// the job "JOB:last".
boost::shared_ptr<NZELVOR20::TInmemNamespace> makeRecordStore(std::size_t records);

inline constexpr std::size_t kServices = 100;

/// What the service of every record is called.
inline constexpr char kRecordService[] = "Vendor: Memory Test";
