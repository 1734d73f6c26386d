#include "engine/protocol/PlaceRecord.h"

namespace engine {

PlaceRecord PlaceRecord::make() noexcept { return PlaceRecord(); }
bool PlaceRecord::isRecord(int) noexcept { return false; }
PlaceRecord::PlaceRecord(PlaceRecord&&) noexcept : m_descriptor(-1) {}
PlaceRecord& PlaceRecord::operator=(PlaceRecord&&) noexcept { return *this; }
PlaceRecord::~PlaceRecord() = default;
bool PlaceRecord::write(int, const char*, const char*) noexcept { return false; }
std::optional<Entered> PlaceRecord::read() const { return std::nullopt; }

}  // namespace engine
