#include "tests/providers/common/cmpi/FakeBroker.h"

#include <thread>

namespace providers {

namespace {

/// Every object: what the provider sees in front, what the broker knows behind it.
template <class Head>
struct Object {
  Head head{};
  FakeBroker* broker = nullptr;
};
struct StringObject : Object<CMPIString> {
  std::string text;
};
struct ArrayObject : Object<CMPIArray> {
  CMPIType type = CMPI_null;
  std::vector<CMPIData> items;
};
struct DateTimeObject : Object<CMPIDateTime> {
  CMPIUint64 microseconds = 0;
  CMPIBoolean interval = CMPI_false;
};
struct PathObject : Object<CMPIObjectPath> {
  std::string nameSpace, className;
  FakeBroker::NamedValues values;
};
struct InstanceObject : Object<CMPIInstance> {
  CMPIObjectPath* path = nullptr;
  FakeBroker::NamedValues values;
};
struct ArgsObject : Object<CMPIArgs> {
  FakeBroker::NamedValues values;
};
struct ResultObject : Object<CMPIResult> {
  FakeBroker::Answer* answer = nullptr;
};

StringObject& of(const CMPIString* head) { return *static_cast<StringObject*>(head->hdl); }
ArrayObject& of(const CMPIArray* head) { return *static_cast<ArrayObject*>(head->hdl); }
DateTimeObject& of(const CMPIDateTime* head) { return *static_cast<DateTimeObject*>(head->hdl); }
PathObject& of(const CMPIObjectPath* head) { return *static_cast<PathObject*>(head->hdl); }
InstanceObject& of(const CMPIInstance* head) { return *static_cast<InstanceObject*>(head->hdl); }
ArgsObject& of(const CMPIArgs* head) { return *static_cast<ArgsObject*>(head->hdl); }
ResultObject& of(const CMPIResult* head) { return *static_cast<ResultObject*>(head->hdl); }
FakeBroker& of(const CMPIBroker* head) { return *static_cast<FakeBroker*>(head->hdl); }

template <class Made, class Table>
Made* make(FakeBroker& broker, Table* table) {
  auto object = std::make_shared<Made>();
  object->broker = &broker;
  object->head.hdl = object.get();
  object->head.ft = table;
  return broker.keep(object);
}

/// What a setter was given: texts become strings of the broker, as with a real one.
CMPIData given(FakeBroker& broker, const CMPIValue* value, CMPIType type) {
  if (!value) return dataOf(type, {}, CMPI_nullValue);
  if (type != CMPI_chars) return dataOf(type, *value);
  CMPIValue string{};
  string.string = broker.text(reinterpret_cast<const char*>(value));
  return dataOf(CMPI_string, string);
}

template <class Head>
CMPIStatus put(const Head* head, const char* function, const char* name, const CMPIValue* value,
               CMPIType type) {
  CMPIStatus status{CMPI_RC_OK, nullptr};
  FakeBroker& broker = *of(head).broker;
  if (broker.refuses(function, &status)) return status;
  of(head).values.emplace_back(name, given(broker, value, type));
  return status;
}

template <class Head>
CMPIData valueAt(const Head* head, CMPICount index, CMPIString** name, CMPIStatus*) {
  const auto& [own, data] = of(head).values.at(index);
  if (name) *name = of(head).broker->text(own);
  return data;
}

template <class Head>
CMPICount valueCount(const Head* head, CMPIStatus*) {
  return static_cast<CMPICount>(of(head).values.size());
}

CMPIStringFT* stringTable() {
  static CMPIStringFT table{};
  table.getCharPtr = [](const CMPIString* head, CMPIStatus*) { return of(head).text.c_str(); };
  return &table;
}

CMPIArrayFT* arrayTable() {
  static CMPIArrayFT table{};
  table.getSize = [](const CMPIArray* head, CMPIStatus*) {
    return static_cast<CMPICount>(of(head).items.size());
  };
  table.getSimpleType = [](const CMPIArray* head, CMPIStatus*) { return of(head).type; };
  table.getElementAt = [](const CMPIArray* head, CMPICount index, CMPIStatus*) {
    return of(head).items.at(index);
  };
  table.setElementAt = [](const CMPIArray* head, CMPICount index, const CMPIValue* value,
                          CMPIType type) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    FakeBroker& broker = *of(head).broker;
    if (!broker.refuses("setElementAt", &status))
      of(head).items.at(index) = given(broker, value, type);
    return status;
  };
  return &table;
}

CMPIDateTimeFT* dateTimeTable() {
  static CMPIDateTimeFT table{};
  table.getBinaryFormat = [](const CMPIDateTime* head, CMPIStatus*) {
    return of(head).microseconds;
  };
  table.isInterval = [](const CMPIDateTime* head, CMPIStatus*) { return of(head).interval; };
  return &table;
}

CMPIObjectPathFT* pathTable() {
  static CMPIObjectPathFT table{};
  table.getNameSpace = [](const CMPIObjectPath* head, CMPIStatus*) {
    return of(head).broker->text(of(head).nameSpace);
  };
  table.getClassName = [](const CMPIObjectPath* head, CMPIStatus*) {
    return of(head).broker->text(of(head).className);
  };
  table.addKey = [](const CMPIObjectPath* head, const char* name, const CMPIValue* value,
                    const CMPIType type) { return put(head, "addKey", name, value, type); };
  table.getKeyAt = valueAt<CMPIObjectPath>;
  table.getKeyCount = valueCount<CMPIObjectPath>;
  return &table;
}

CMPIInstanceFT* instanceTable() {
  static CMPIInstanceFT table{};
  table.getPropertyAt = valueAt<CMPIInstance>;
  table.getPropertyCount = valueCount<CMPIInstance>;
  table.setProperty = [](const CMPIInstance* head, const char* name, const CMPIValue* value,
                         CMPIType type) { return put(head, "setProperty", name, value, type); };
  table.getObjectPath = [](const CMPIInstance* head, CMPIStatus*) { return of(head).path; };
  return &table;
}

CMPIArgsFT* argsTable() {
  static CMPIArgsFT table{};
  table.addArg = [](const CMPIArgs* head, const char* name, const CMPIValue* value,
                    const CMPIType type) { return put(head, "addArg", name, value, type); };
  table.getArgAt = valueAt<CMPIArgs>;
  table.getArgCount = valueCount<CMPIArgs>;
  return &table;
}

CMPIResultFT* resultTable() {
  static CMPIResultFT table{};
  table.returnData = [](const CMPIResult* head, const CMPIValue* value, const CMPIType type) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (!of(head).broker->refuses("returnData", &status))
      of(head).answer->data.push_back(dataOf(type, *value));
    return status;
  };
  table.returnInstance = [](const CMPIResult* head, const CMPIInstance* instance) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (!of(head).broker->refuses("returnInstance", &status))
      of(head).answer->instances.push_back(instance);
    return status;
  };
  table.returnObjectPath = [](const CMPIResult* head, const CMPIObjectPath* path) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (!of(head).broker->refuses("returnObjectPath", &status))
      of(head).answer->paths.push_back(path);
    return status;
  };
  table.returnDone = [](const CMPIResult* head) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (!of(head).broker->refuses("returnDone", &status)) ++of(head).answer->done;
    return status;
  };
  return &table;
}

/// A running thread of the broker.
struct Running {
  std::thread thread;
  CMPI_THREAD_RETURN result{};
};

/// The functions of the system have no broker among their parameters.
FakeBroker* present = nullptr;

}  // namespace

CMPIData dataOf(CMPIType type, CMPIValue value, CMPIValueState state) {
  CMPIData data{};
  data.type = type;
  data.state = state;
  data.value = value;
  return data;
}

FakeBroker::FakeBroker() {
  m_broker.hdl = this;
  m_broker.bft = &m_upcalls;
  m_broker.eft = &m_factories;
  m_broker.xft = &m_system;
  present = this;
  m_contextTable.release = [](CMPIContext* context) {
    const bool isPrepared = context == &present->m_preparedContext;
    present->addStep(isPrepared ? "release" : "release another");
    return CMPIStatus{CMPI_RC_OK, nullptr};
  };
  m_context.ft = m_preparedContext.ft = &m_contextTable;
  fillFactories();
  fillUpcalls();
  fillThreads();
}

FakeBroker::~FakeBroker() { present = nullptr; }

bool FakeBroker::refuses(const char* function, CMPIStatus* status) {
  if (m_refused != function) return false;
  if (status) *status = {CMPI_RC_ERR_FAILED, text("no " + m_refused)};
  return true;
}

bool FakeBroker::isA(std::string className, const std::string& ancestor) const {
  while (className != ancestor) {
    const auto above = m_ancestors.find(className);
    if (above == m_ancestors.end()) return false;
    className = above->second;
  }
  return true;
}

CMPIString* FakeBroker::text(const std::string& text) {
  auto* object = make<StringObject>(*this, stringTable());
  object->text = text;
  return &object->head;
}

CMPIArray* FakeBroker::array(CMPIType type, const std::vector<CMPIData>& items) {
  auto* object = make<ArrayObject>(*this, arrayTable());
  object->type = type;
  object->items = items;
  return &object->head;
}

CMPIResult* FakeBroker::result(Answer& answer) {
  auto* object = make<ResultObject>(*this, resultTable());
  object->answer = &answer;
  return &object->head;
}

FakeBroker::NamedValues& FakeBroker::valuesOf(const CMPIObjectPath* path) {
  return of(path).values;
}
FakeBroker::NamedValues& FakeBroker::valuesOf(const CMPIInstance* instance) {
  return of(instance).values;
}
FakeBroker::NamedValues& FakeBroker::valuesOf(const CMPIArgs* args) { return of(args).values; }
std::string FakeBroker::nameSpaceOf(const CMPIObjectPath* path) { return of(path).nameSpace; }

void FakeBroker::fillFactories() {
  m_factories.newString = [](const CMPIBroker* broker, const char* text, CMPIStatus*) {
    return of(broker).text(text);
  };
  m_factories.newArray = [](const CMPIBroker* broker, CMPICount size, CMPIType type,
                            CMPIStatus* status) -> CMPIArray* {
    if (of(broker).refuses("newArray", status)) return nullptr;
    return of(broker).array(type, std::vector<CMPIData>(size, dataOf(type, {}, CMPI_nullValue)));
  };
  m_factories.newDateTimeFromBinary = [](const CMPIBroker* broker, CMPIUint64 microseconds,
                                         CMPIBoolean interval,
                                         CMPIStatus* status) -> CMPIDateTime* {
    if (of(broker).refuses("newDateTimeFromBinary", status)) return nullptr;
    auto* object = make<DateTimeObject>(of(broker), dateTimeTable());
    object->microseconds = microseconds;
    object->interval = interval;
    return &object->head;
  };
  m_factories.newObjectPath = [](const CMPIBroker* broker, const char* nameSpace,
                                 const char* className, CMPIStatus* status) -> CMPIObjectPath* {
    if (of(broker).refuses("newObjectPath", status)) return nullptr;
    auto* object = make<PathObject>(of(broker), pathTable());
    object->nameSpace = nameSpace;
    object->className = className;
    return &object->head;
  };
  m_factories.newInstance = [](const CMPIBroker* broker, const CMPIObjectPath* path,
                               CMPIStatus* status) -> CMPIInstance* {
    if (of(broker).refuses("newInstance", status)) return nullptr;
    auto* object = make<InstanceObject>(of(broker), instanceTable());
    object->path = &of(path).head;
    return &object->head;
  };
  m_factories.newArgs = [](const CMPIBroker* broker, CMPIStatus*) {
    return &make<ArgsObject>(of(broker), argsTable())->head;
  };
  m_factories.classPathIsA = [](const CMPIBroker* broker, const CMPIObjectPath* path,
                                const char* ancestor, CMPIStatus* status) {
    if (of(broker).refuses("classPathIsA", status)) return CMPI_false;
    return of(broker).isA(of(path).className, ancestor) ? CMPI_true : CMPI_false;
  };
}

void FakeBroker::fillUpcalls() {
  m_upcalls.getInstance = [](const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath*,
                             const char**, CMPIStatus* status) -> CMPIInstance* {
    if (of(broker).refuses("getInstance", status)) return nullptr;
    return of(broker).served();
  };
  m_upcalls.prepareAttachThread = [](const CMPIBroker* broker, const CMPIContext* context) {
    FakeBroker& self = of(broker);
    self.addStep(context == &self.m_context ? "prepare" : "prepare another context");
    if (self.refuses("prepareAttachThread", nullptr)) return static_cast<CMPIContext*>(nullptr);
    return &self.m_preparedContext;
  };
  m_upcalls.attachThread = [](const CMPIBroker* broker, const CMPIContext* context) {
    FakeBroker& self = of(broker);
    self.addStep(context == &self.m_preparedContext ? "attach" : "attach another");
    CMPIStatus status{CMPI_RC_OK, nullptr};
    self.refuses("attachThread", &status);
    return status;
  };
  m_upcalls.detachThread = [](const CMPIBroker* broker, const CMPIContext* context) {
    FakeBroker& self = of(broker);
    self.addStep(context == &self.m_preparedContext ? "detach" : "detach another");
    return CMPIStatus{CMPI_RC_OK, nullptr};
  };
}

void FakeBroker::fillThreads() {
  m_system.newThread = [](CMPIThreadFunc start, void* parameter, int detached) -> CMPI_THREAD_TYPE {
    if (present->refuses("newThread", nullptr)) return nullptr;
    if (detached) present->addStep("detached");
    auto* running = new Running;
    const auto run = [running, start, parameter] { running->result = start(parameter); };
    if (present->runsThreadsAtOnce()) {
      run();
    } else {
      running->thread = std::thread(run);
    }
    return running;
  };
  m_system.joinThread = [](CMPI_THREAD_TYPE handle, CMPI_THREAD_RETURN* result) {
    const std::unique_ptr<Running> running(static_cast<Running*>(handle));
    if (running->thread.joinable()) running->thread.join();
    present->addStep("join");
    if (result) *result = running->result;
    return 0;
  };
}

}  // namespace providers
