#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/manager/operations/Merge.h"
#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp {

class ObjectManager;

/// Throws `TVORException` (no such property) where the class that is selected from is declared
/// without a property that the query names.
void requireProperties(const query::Query& query, const ClassRepository& classes);

/// The answers of one query. A provider is asked the query itself; one that answers no queries is
/// asked for everything. Either way the condition is applied to what comes: a provider that
/// answers queries may have left it alone. Refers to what it is made of.
class QueryAnswers {
 public:
  QueryAnswers(ObjectManager& manager, const query::Query& query, const std::string& language,
               const ClassRepository& classes, const InstanceSink& sink);
  QueryAnswers(const QueryAnswers&) = delete;
  QueryAnswers& operator=(const QueryAnswers&) = delete;

  static constexpr bool walks = true;
  /// A provider may deliver something before it says that it answers no queries.
  static constexpr bool mayRepeat = true;

  void ask(Provider& provider, const ObjectPath& classPath, Merge& merge) const;
  void askReferences(Provider& provider, const ObjectPath& end, const AssociationFilter& filter,
                     Merge& merge) const;
  bool give(const InstanceDataPtr& instance, Merge& merge) const;

 private:
  bool isSelected(const InstanceData& instance) const;
  bool mayBeSelected(const InstanceData& answered) const;
  bool deliver(const InstanceDataPtr& instance) const;

  ObjectManager& m_manager;
  const query::Query& m_query;
  const std::string& m_language;
  const ClassRepository& m_classes;
  const InstanceSink& m_sink;
  bool m_mayHide;  ///< the condition looks at what is not selected
  InstanceSink m_takeWhole;
  InstanceSink m_takeAnswered;
};

}  // namespace cmpinsp
