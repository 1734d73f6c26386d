/* Providers for the tests of the object manager: animals, their keepers and who cares for whom.

   Zoo_Animals  instances of ZOO_Cat, and of ZOO_Animal with the cats again among them; methods
   Zoo_Dogs     instances of ZOO_Dog
   Zoo_Ghosts   instances of ZOO_Dog that lack their key
   Zoo_Keepers  instances of ZOO_Keeper
   Zoo_Office   instances of ZOO_Keeper, and answers to queries: everybody, or for a query that
                starts with "SELECT Name" just the name of Bob
   Zoo_Cares    the association ZOO_Cares, through the association interface alone
   Zoo_Bonds    the same class, through the instance interface alone: Ann and Tom, Bob and Mia
   Zoo_Named    the association ZOO_Cares, names alone; and a cat that nobody has
   Zoo_Ties     single instances of ZOO_Cares, which it does not enumerate
   Zoo_Mute     supports nothing
   Zoo_Looks    the moods of animals, through the property interface alone
   Zoo_Fickle   an instance of ZOO_Cage, and then the answer that it does not serve the class
   Zoo_Broken   fails in every call
   Zoo_Founded  is never made: its factory says in which namespace it is to start */
#include <string.h>

#include "cmpi/cmpi.h"

static const CMPIBroker* gBroker;

static const char* textOf(CMPIString* text) { return text == NULL ? "" : CMGetCharPtr(text); }

static CMPIStatus ok(void) {
  CMPIStatus status = {CMPI_RC_OK, NULL};
  return status;
}

static CMPIStatus failure(CMPIrc code, const char* text) {
  CMPIStatus status = {code, CMNewString(gBroker, text, NULL)};
  return status;
}

static CMPIObjectPath* pathOf(const char* nameSpace, const char* className, const char* name) {
  CMPIObjectPath* path = CMNewObjectPath(gBroker, nameSpace, className, NULL);
  if (name != NULL) CMAddKey(path, "Name", name, CMPI_chars);
  return path;
}

static CMPIInstance* animal(const char* nameSpace, const char* className, const char* name,
                            CMPIUint16 mood) {
  CMPIInstance* instance = CMNewInstance(gBroker, pathOf(nameSpace, className, name), NULL);
  CMSetProperty(instance, "Name", name, CMPI_chars);
  CMSetProperty(instance, "Mood", &mood, CMPI_uint16);
  return instance;
}

/* What the providers know, in the order in which they tell it. */
struct Resident {
  const char* askedFor;
  const char* className;
  const char* name;
  CMPIUint16 mood;
};

static const struct Resident kAnimals[] = {{"ZOO_Cat", "ZOO_Cat", "Mia", 1},
                                           {"ZOO_Cat", "ZOO_Cat", "Tom", 2},
                                           {"ZOO_Animal", "ZOO_Cat", "Tom", 2},
                                           {"ZOO_Animal", "ZOO_Animal", "Nessie", 1},
                                           {"ZOO_Animal", "ZOO_Keeper", "Intruder", 1}};
static const struct Resident kDogs[] = {{"ZOO_Dog", "ZOO_Dog", "Rex", 2}};
static const struct Resident kGhosts[] = {{"ZOO_Dog", "ZOO_Dog", NULL, 1},
                                          {"ZOO_Dog", "ZOO_Dog", NULL, 2}};
static const struct Resident kCages[] = {{"ZOO_Cage", "ZOO_Cage", "North", 1}};
static const struct Resident kKeepers[] = {{"ZOO_Keeper", "ZOO_Keeper", "Ann", 1},
                                           {"ZOO_Keeper", "ZOO_Keeper", "Bob", 1}};

static const struct Resident kStaff[] = {{"ZOO_Keeper", "ZOO_Keeper", "Ann", 1},
                                         {"ZOO_Keeper", "ZOO_Keeper", "Bob", 2}};

static CMPIStatus enumerate(const struct Resident* residents, size_t count,
                            const CMPIResult* result, const CMPIObjectPath* path, int namesOnly) {
  const char* asked = textOf(CMGetClassName(path, NULL));
  const char* nameSpace = textOf(CMGetNameSpace(path, NULL));
  size_t at;
  for (at = 0; at < count; ++at) {
    const struct Resident* resident = &residents[at];
    if (strcmp(resident->askedFor, asked) != 0) continue;
    if (namesOnly) {
      CMReturnObjectPath(result, pathOf(nameSpace, resident->className, resident->name));
    } else {
      CMReturnInstance(result,
                       animal(nameSpace, resident->className, resident->name, resident->mood));
    }
  }
  CMReturnDone(result);
  return ok();
}

static CMPIStatus get(const struct Resident* residents, size_t count, const CMPIResult* result,
                      const CMPIObjectPath* path) {
  CMPIData key = CMGetKey(path, "Name", NULL);
  size_t at;
  for (at = 0; at < count; ++at) {
    const struct Resident* resident = &residents[at];
    if (resident->name == NULL) continue;
    if (strcmp(resident->name, textOf(key.value.string)) != 0) continue;
    CMReturnInstance(result, animal(textOf(CMGetNameSpace(path, NULL)), resident->className,
                                    resident->name, resident->mood));
    CMReturnDone(result);
    return ok();
  }
  return failure(CMPI_RC_ERR_NOT_FOUND, "nobody of that name");
}

/* The functions that hardly a provider here has more to say in. */
#define ZOO_REFUSED_CHANGES(prefix)                                                                \
  static CMPIStatus prefix##Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx,                    \
                                    CMPIBoolean terminating) {                                     \
    (void)mi, (void)ctx, (void)terminating;                                                        \
    return ok();                                                                                   \
  }                                                                                                \
  static CMPIStatus prefix##CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,             \
                                           const CMPIResult* result, const CMPIObjectPath* path,   \
                                           const CMPIInstance* instance) {                         \
    (void)mi, (void)ctx, (void)result, (void)path, (void)instance;                                 \
    return failure(CMPI_RC_ERR_NOT_SUPPORTED, "no newcomers");                                     \
  }                                                                                                \
  static CMPIStatus prefix##ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,             \
                                           const CMPIResult* result, const CMPIObjectPath* path,   \
                                           const CMPIInstance* instance, const char** props) {     \
    (void)mi, (void)ctx, (void)result, (void)path, (void)instance, (void)props;                    \
    return failure(CMPI_RC_ERR_NOT_SUPPORTED, "no changes");                                       \
  }                                                                                                \
  static CMPIStatus prefix##DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,             \
                                           const CMPIResult* result, const CMPIObjectPath* path) { \
    (void)mi, (void)ctx, (void)result, (void)path;                                                 \
    return failure(CMPI_RC_ERR_NOT_SUPPORTED, "nobody leaves");                                    \
  }

#define ZOO_NO_QUERIES(prefix)                                                              \
  static CMPIStatus prefix##ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx,           \
                                      const CMPIResult* result, const CMPIObjectPath* path, \
                                      const char* language, const char* query) {            \
    (void)mi, (void)ctx, (void)result, (void)path, (void)language, (void)query;             \
    return failure(CMPI_RC_ERR_NOT_SUPPORTED, "no queries");                                \
  }

#define ZOO_RESIDENTS(prefix, residents)                                                        \
  ZOO_REFUSED_CHANGES(prefix)                                                                   \
  static CMPIStatus prefix##EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,       \
                                              const CMPIResult* result,                         \
                                              const CMPIObjectPath* path) {                     \
    (void)mi, (void)ctx;                                                                        \
    return enumerate(residents, sizeof residents / sizeof *residents, result, path, 1);         \
  }                                                                                             \
  static CMPIStatus prefix##EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,           \
                                          const CMPIResult* result, const CMPIObjectPath* path, \
                                          const char** props) {                                 \
    (void)mi, (void)ctx, (void)props;                                                           \
    return enumerate(residents, sizeof residents / sizeof *residents, result, path, 0);         \
  }                                                                                             \
  static CMPIStatus prefix##GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,             \
                                        const CMPIResult* result, const CMPIObjectPath* path,   \
                                        const char** props) {                                   \
    (void)mi, (void)ctx, (void)props;                                                           \
    return get(residents, sizeof residents / sizeof *residents, result, path);                  \
  }

static CMPIStatus OfficeExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* query, const char* language) {
  (void)mi, (void)ctx, (void)language;
  if (strncmp(query, "SELECT Name", strlen("SELECT Name")) != 0) {
    return enumerate(kStaff, sizeof kStaff / sizeof *kStaff, result, path, 0);
  }
  CMReturnInstance(result, CMNewInstance(gBroker, pathOf("root/cimv2", "ZOO_Keeper", "Bob"), NULL));
  CMReturnDone(result);
  return ok();
}

ZOO_NO_QUERIES(Animals)
ZOO_NO_QUERIES(Dogs)
ZOO_NO_QUERIES(Ghosts)
ZOO_NO_QUERIES(Keepers)
ZOO_NO_QUERIES(Broken)
ZOO_NO_QUERIES(Fickle)
ZOO_NO_QUERIES(Bonds)
ZOO_RESIDENTS(Animals, kAnimals)
ZOO_RESIDENTS(Dogs, kDogs)
ZOO_RESIDENTS(Ghosts, kGhosts)
ZOO_RESIDENTS(Keepers, kKeepers)
ZOO_RESIDENTS(Office, kStaff)
CMInstanceMIStub(Office, Zoo_Office, gBroker, CMNoHook)
    CMInstanceMIStub(Animals, Zoo_Animals, gBroker, CMNoHook)
        CMInstanceMIStub(Ghosts, Zoo_Ghosts, gBroker, CMNoHook)
            CMInstanceMIStub(Dogs, Zoo_Dogs, gBroker, CMNoHook)
                CMInstanceMIStub(Keepers, Zoo_Keepers, gBroker, CMNoHook)

                    ZOO_REFUSED_CHANGES(Broken)

                        static CMPIStatus
    BrokenEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* path) {
  (void)mi, (void)ctx, (void)result, (void)path;
  return failure(CMPI_RC_ERR_FAILED, "out of order");
}

static CMPIStatus BrokenEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char** props) {
  (void)props;
  return BrokenEnumInstanceNames(mi, ctx, result, path);
}

static CMPIStatus BrokenGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** props) {
  (void)props;
  return BrokenEnumInstanceNames(mi, ctx, result, path);
}
CMInstanceMIStub(Broken, Zoo_Broken, gBroker, CMNoHook)

    ZOO_REFUSED_CHANGES(Fickle)

        static CMPIStatus
    FickleEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* path) {
  (void)mi, (void)ctx;
  enumerate(kCages, 1, result, path, 1);
  return failure(CMPI_RC_ERR_NOT_SUPPORTED, "changed its mind");
}

static CMPIStatus FickleEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char** props) {
  (void)mi, (void)ctx, (void)props;
  enumerate(kCages, 1, result, path, 0);
  return failure(CMPI_RC_ERR_NOT_SUPPORTED, "changed its mind");
}

static CMPIStatus FickleGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** props) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)props;
  return failure(CMPI_RC_ERR_NOT_SUPPORTED, "changed its mind");
}
CMInstanceMIStub(Fickle, Zoo_Fickle, gBroker, CMNoHook)

    CMPI_EXTERN_C CMPIInstanceMI* Zoo_Founded_Create_InstanceMI(const CMPIBroker* broker,
                                                                const CMPIContext* ctx,
                                                                CMPIStatus* st);
CMPIInstanceMI* Zoo_Founded_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* ctx,
                                              CMPIStatus* st) {
  gBroker = broker;
  st->rc = CMPI_RC_ERR_FAILED;
  st->msg = CMGetContextEntry(ctx, CMPIInitNameSpace, NULL).value.string;
  return NULL;
}

static CMPIStatus AnimalsMethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                       CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  return ok();
}

/* Feed answers 5 and nothing else for more than 1000 grams, and fails at 13. */
static CMPIStatus AnimalsInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* method, const CMPIArgs* in, CMPIArgs* out) {
  CMPIData grams = CMGetArg(in, "Grams", NULL);
  CMPIUint32 code = 0;
  CMPIUint16 left = 3;
  (void)mi, (void)ctx, (void)path;
  if (strcmp(method, "Purr") == 0) {
    code = 9;
    return CMReturnData(result, &code, CMPI_uint32);
  }
  if (strcmp(method, "Feed") != 0) return failure(CMPI_RC_ERR_METHOD_NOT_FOUND, method);
  if (grams.type != CMPI_uint32) return failure(CMPI_RC_ERR_TYPE_MISMATCH, "Grams");
  if (grams.value.uint32 == 13) return failure(CMPI_RC_ERR_FAILED, "superstition");
  if (grams.value.uint32 > 1000) {
    code = 5;
  } else {
    CMAddArg(out, "Answer", "miaow", CMPI_chars);
    CMAddArg(out, "Left", &left, CMPI_uint16);
    CMAddArg(out, "Grams", &grams.value, CMPI_uint32);
  }
  CMReturnData(result, &code, CMPI_uint32);
  CMReturnDone(result);
  return ok();
}
CMMethodMIStub(Animals, Zoo_Animals, gBroker, CMNoHook)

    /* Ann cares for Mia and Tom, Bob for Tom. */
    static const char* kCares[][2] = {{"Ann", "Mia"}, {"Ann", "Tom"}, {"Bob", "Tom"}};

static CMPIInstance* cares(const char* nameSpace, const char* keeper, const char* cat) {
  CMPIObjectPath* path = CMNewObjectPath(gBroker, nameSpace, "ZOO_Cares", NULL);
  CMPIObjectPath* keeperPath = pathOf(nameSpace, "ZOO_Keeper", keeper);
  CMPIObjectPath* catPath = pathOf(nameSpace, "ZOO_Cat", cat);
  CMPIInstance* instance;
  CMAddKey(path, "Keeper", &keeperPath, CMPI_ref);
  CMAddKey(path, "Animal", &catPath, CMPI_ref);
  instance = CMNewInstance(gBroker, path, NULL);
  CMSetProperty(instance, "Keeper", &keeperPath, CMPI_ref);
  CMSetProperty(instance, "Animal", &catPath, CMPI_ref);
  return instance;
}

/* What to hand out of each association that the path is an end of. */
enum Wanted { kLinks, kLinkNames, kOthers, kOtherNames };

/* Only whoever is asked for by its own class is known, as with many providers. */
static CMPIStatus walk(const CMPIResult* result, const CMPIObjectPath* path, enum Wanted wanted) {
  const char* nameSpace = textOf(CMGetNameSpace(path, NULL));
  const char* className = textOf(CMGetClassName(path, NULL));
  const char* name = textOf(CMGetKey(path, "Name", NULL).value.string);
  size_t at;
  for (at = 0; at < sizeof kCares / sizeof *kCares; ++at) {
    const int fromKeeper = strcmp(kCares[at][0], name) == 0;
    const char* other = kCares[at][fromKeeper ? 1 : 0];
    const char* otherClass = fromKeeper ? "ZOO_Cat" : "ZOO_Keeper";
    CMPIInstance* link;
    if (!fromKeeper && strcmp(kCares[at][1], name) != 0) continue;
    if (strcmp(className, fromKeeper ? "ZOO_Keeper" : "ZOO_Cat") != 0) continue;
    link = cares(nameSpace, kCares[at][0], kCares[at][1]);
    if (wanted == kLinks) CMReturnInstance(result, link);
    if (wanted == kLinkNames) CMReturnObjectPath(result, CMGetObjectPath(link, NULL));
    if (wanted == kOthers) CMReturnInstance(result, animal(nameSpace, otherClass, other, 1));
    if (wanted == kOtherNames) CMReturnObjectPath(result, pathOf(nameSpace, otherClass, other));
  }
  CMReturnDone(result);
  return ok();
}

static CMPIStatus CaresAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                          CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  return ok();
}

static CMPIStatus CaresAssociators(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* assocClass, const char* resultClass,
                                   const char* role, const char* resultRole, const char** props) {
  (void)mi, (void)ctx, (void)assocClass, (void)resultClass, (void)role, (void)resultRole,
      (void)props;
  return walk(result, path, kOthers);
}

static CMPIStatus CaresAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char* assocClass, const char* resultClass,
                                       const char* role, const char* resultRole) {
  (void)mi, (void)ctx, (void)assocClass, (void)resultClass, (void)role, (void)resultRole;
  return walk(result, path, kOtherNames);
}

static CMPIStatus CaresReferences(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* resultClass, const char* role, const char** props) {
  (void)mi, (void)ctx, (void)resultClass, (void)role, (void)props;
  return walk(result, path, kLinks);
}

static CMPIStatus CaresReferenceNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* resultClass, const char* role) {
  (void)mi, (void)ctx, (void)resultClass, (void)role;
  return walk(result, path, kLinkNames);
}
CMAssociationMIStub(Cares, Zoo_Cares, gBroker, CMNoHook)

    static CMPIStatus NamedAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                              CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  return ok();
}

static CMPIStatus NamedAssociators(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* assocClass, const char* resultClass,
                                   const char* role, const char* resultRole, const char** props) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)assocClass, (void)resultClass, (void)role,
      (void)resultRole, (void)props;
  return failure(CMPI_RC_ERR_NOT_SUPPORTED, "names alone");
}

static CMPIStatus NamedAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char* assocClass, const char* resultClass,
                                       const char* role, const char* resultRole) {
  (void)mi, (void)ctx, (void)assocClass, (void)resultClass, (void)role, (void)resultRole;
  CMReturnObjectPath(result, pathOf("root/cimv2", "ZOO_Cat", "Cheshire"));
  return walk(result, path, kOtherNames);
}

static CMPIStatus NamedReferences(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* resultClass, const char* role, const char** props) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)resultClass, (void)role, (void)props;
  return failure(CMPI_RC_ERR_NOT_SUPPORTED, "names alone");
}

static CMPIStatus NamedReferenceNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* resultClass, const char* role) {
  (void)mi, (void)ctx, (void)resultClass, (void)role;
  return walk(result, path, kLinkNames);
}
CMAssociationMIStub(Named, Zoo_Named, gBroker, CMNoHook)

    ZOO_REFUSED_CHANGES(Mute) ZOO_NO_QUERIES(Mute)

        static CMPIStatus
    MuteEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                          const CMPIObjectPath* path) {
  (void)mi, (void)ctx, (void)result, (void)path;
  return failure(CMPI_RC_ERR_NOT_SUPPORTED, "no word");
}

static CMPIStatus MuteEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** props) {
  (void)props;
  return MuteEnumInstanceNames(mi, ctx, result, path);
}

static CMPIStatus MuteGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char** props) {
  (void)props;
  return MuteEnumInstanceNames(mi, ctx, result, path);
}
CMInstanceMIStub(Mute, Zoo_Mute, gBroker, CMNoHook)

    ZOO_REFUSED_CHANGES(Ties) ZOO_NO_QUERIES(Ties)

        static CMPIStatus
    TiesEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                          const CMPIObjectPath* path) {
  return MuteEnumInstanceNames(mi, ctx, result, path);
}

static CMPIStatus TiesEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** props) {
  (void)props;
  return MuteEnumInstanceNames(mi, ctx, result, path);
}

static CMPIStatus TiesGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char** props) {
  const CMPIData keeper = CMGetKey(path, "Keeper", NULL);
  const CMPIData animal = CMGetKey(path, "Animal", NULL);
  (void)mi, (void)ctx, (void)props;
  if (keeper.type != CMPI_ref || animal.type != CMPI_ref) return failure(CMPI_RC_ERR_FAILED, "");
  return CMReturnInstance(
      result, cares("root/cimv2", textOf(CMGetKey(keeper.value.ref, "Name", NULL).value.string),
                    textOf(CMGetKey(animal.value.ref, "Name", NULL).value.string)));
}
CMInstanceMIStub(Ties, Zoo_Ties, gBroker, CMNoHook)

    ZOO_REFUSED_CHANGES(Bonds)

    /* The references leave the namespace out, as some providers do. */
    static CMPIStatus
    enumerateBonds(const CMPIResult* result, const CMPIObjectPath* path, int namesOnly) {
  CMPIInstance* bonds[2];
  size_t at;
  (void)path;
  bonds[0] = cares(NULL, "Ann", "Tom");
  bonds[1] = cares(NULL, "Bob", "Mia");
  for (at = 0; at < 2; ++at) {
    if (namesOnly) {
      CMReturnObjectPath(result, CMGetObjectPath(bonds[at], NULL));
    } else {
      CMReturnInstance(result, bonds[at]);
    }
  }
  CMReturnDone(result);
  return ok();
}

static CMPIStatus BondsEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)ctx;
  return enumerateBonds(result, path, 1);
}

static CMPIStatus BondsEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** props) {
  (void)mi, (void)ctx, (void)props;
  return enumerateBonds(result, path, 0);
}

static CMPIStatus BondsGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char** props) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)props;
  return failure(CMPI_RC_ERR_NOT_FOUND, "no such bond");
}
CMInstanceMIStub(Bonds, Zoo_Bonds, gBroker, CMNoHook)

    /* Mood can be read and set, Legs cannot be set; what else there is, others know. */
    static CMPIUint16 gMood = 7;

static CMPIStatus LooksPropertyCleanup(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                       CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  return ok();
}

static CMPIStatus LooksSetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* name, const CMPIData data) {
  (void)mi, (void)ctx, (void)result, (void)path;
  if (strcmp(name, "Legs") == 0) return failure(CMPI_RC_ERR_ACCESS_DENIED, "no surgery");
  if (strcmp(name, "Mood") != 0) return failure(CMPI_RC_ERR_NOT_SUPPORTED, name);
  gMood = data.value.uint16;
  return ok();
}

static CMPIStatus LooksGetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* name) {
  (void)mi, (void)ctx, (void)path;
  if (strcmp(name, "Mood") != 0) return failure(CMPI_RC_ERR_NOT_SUPPORTED, name);
  return CMReturnData(result, &gMood, CMPI_uint16);
}
CMPropertyMIStub(Looks, Zoo_Looks, gBroker, CMNoHook)
