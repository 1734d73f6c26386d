#include "substitute/cmpi.nsp/manager/operations/QueryAnswers.h"

#include <algorithm>

#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/manager/operations/Narrowing.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/query/DataObject.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMValue;

bool lists(const std::vector<std::string>& names, const std::string& name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& listed) { return vorcore::equalNames(listed, name); });
}

/// What a provider made of a query: properties that are not selected may have been left out, which
/// looks as if they were null.
class AnsweredObject final : public query::DataObject {
 public:
  AnsweredObject(const InstanceData& data, const ClassRepository& classes,
                 const query::Query& query)
      : DataObject(data, classes), m_query(query) {}

  std::optional<TCIMValue> property(const std::string& name) const override {
    std::optional<TCIMValue> value = DataObject::property(name);
    const bool isLeftOut =
        value->IsNull() && !m_query.selectsAll && !lists(m_query.properties, name);
    if (isLeftOut) value.reset();
    return value;
  }

 private:
  const query::Query& m_query;
};

/// Whether the provider means that it leaves queries, this language or more than the simplest of it
/// to others.
bool leavesQueries(const broker::ProviderFailure& failure) {
  switch (failure.number()) {
    case CMPI_RC_ERR_NOT_SUPPORTED:
    case CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED:
    case CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED:
      return true;
    default:
      return false;
  }
}

}  // namespace

void requireProperties(const query::Query& query, const ClassRepository& classes) {
  const vorcore::ClassDeclarationPtr declaration = classes.find(query.className);
  if (!declaration) return;
  std::vector<std::string> names = query.conditionProperties();
  names.insert(names.end(), query.properties.begin(), query.properties.end());
  for (const std::string& name : names) {
    if (vorcore::equalNames(name, query::kClassProperty)) continue;
    if (declaration->findProperty(name) != vorcore::ClassDeclaration::kNoProperty) continue;
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORNoSuchProperty, "class " + declaration->name + " has no property " + name));
  }
}

QueryAnswers::QueryAnswers(ObjectManager& manager, const query::Query& query,
                           const std::string& language, const ClassRepository& classes,
                           const InstanceSink& sink)
    : m_manager(manager), m_query(query), m_language(language), m_classes(classes), m_sink(sink) {
  const std::vector<std::string> needed = query.conditionProperties();
  m_mayHide = !query.selectsAll &&
              !std::all_of(needed.begin(), needed.end(),
                           [&](const std::string& name) { return lists(query.properties, name); });
  m_takeWhole = [this](const InstanceDataPtr& instance) {
    return !isSelected(*instance) || deliver(instance);
  };
  m_takeAnswered = [this](const InstanceDataPtr& instance) {
    return !mayBeSelected(*instance) || deliver(instance);
  };
}

void QueryAnswers::ask(Provider& provider, const ObjectPath& classPath, Merge& merge) const {
  try {
    provider.executeQuery(
        classPath, m_query.text, m_language,
        [&](const InstanceDataPtr& answered) { return merge.take(answered, m_takeAnswered); });
  } catch (const broker::ProviderFailure& failure) {
    if (!leavesQueries(failure)) throw;
    provider.enumerateInstances(
        classPath, nullptr, [&](const InstanceDataPtr& instance) { return give(instance, merge); });
  }
}

void QueryAnswers::askReferences(Provider& provider, const ObjectPath& end,
                                 const AssociationFilter& filter, Merge& merge) const {
  m_manager.referencesOf(provider, end, filter, nullptr,
                         [&](const InstanceDataPtr& instance) { return give(instance, merge); });
}

bool QueryAnswers::give(const InstanceDataPtr& instance, Merge& merge) const {
  return merge.take(instance, m_takeWhole);
}

bool QueryAnswers::isSelected(const InstanceData& instance) const {
  return query::selects(m_query, instance, m_classes);
}

bool QueryAnswers::mayBeSelected(const InstanceData& answered) const {
  if (!query::isOfSelectedClass(m_query, answered, m_classes)) return false;
  const query::Truth truth = query::evaluate(m_query, AnsweredObject(answered, m_classes, m_query));
  return truth == query::Truth::kTrue || (m_mayHide && truth == query::Truth::kUnknown);
}

bool QueryAnswers::deliver(const InstanceDataPtr& instance) const {
  return m_sink(narrowed(instance, m_query.selectsAll ? nullptr : &m_query.properties));
}

}  // namespace cmpinsp
