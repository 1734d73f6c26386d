#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/query/NormalForm.h"

namespace cmpinsp::broker {

/// A query's condition in one of its normal forms. What is taken from it shares it.
class SelectCondBody final : public Body {
 public:
  using Object = CMPISelectCond;
  static constexpr Kind kKind = Kind::kSelectCond;

  SelectCondBody(query::Form theForm, std::vector<query::Group> theGroups)
      : form(theForm),
        groups(std::make_shared<const std::vector<query::Group>>(std::move(theGroups))) {}
  SelectCondBody(const SelectCondBody& other) : Body(), form(other.form), groups(other.groups) {}

  query::Form form;
  std::shared_ptr<const std::vector<query::Group>> groups;
};

}  // namespace cmpinsp::broker
