#include <sqlite3.h>

#include <string>

#include "tests/history/PowerCut.h"

/// The functions by which SQLite reaches its files: each asks whether the power is there, has the
/// system's layer do the work, and says what was done.
namespace history {
namespace {

struct LayerFile {
  sqlite3_file base;
  std::string* path;
  sqlite3_file* real;
};

LayerFile& of(sqlite3_file* file) { return *reinterpret_cast<LayerFile*>(file); }
sqlite3_file* real(sqlite3_file* file) { return of(file).real; }
const sqlite3_io_methods& methods(sqlite3_file* file) { return *real(file)->pMethods; }
sqlite3_vfs* system(sqlite3_vfs* layer) { return static_cast<sqlite3_vfs*>(layer->pAppData); }
PowerCut& power() { return PowerCut::instance(); }

int close(sqlite3_file* file) {
  const int code = methods(file).xClose(real(file));
  delete of(file).path;
  of(file).path = nullptr;
  return code;
}

int read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
  return methods(file).xRead(real(file), bytes, size, offset);
}

int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset) {
  if (!power().mayGoOn()) return SQLITE_IOERR_WRITE;
  power().written(*of(file).path, static_cast<std::uint64_t>(offset),
                  std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(size)));
  return methods(file).xWrite(real(file), bytes, size, offset);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  if (!power().mayGoOn()) return SQLITE_IOERR_TRUNCATE;
  power().truncated(*of(file).path, static_cast<std::uint64_t>(size));
  return methods(file).xTruncate(real(file), size);
}

// The disk itself need not be troubled: its part is played here.
int sync(sqlite3_file* file, int) {
  if (!power().mayGoOn()) return SQLITE_IOERR_FSYNC;
  power().synced(*of(file).path);
  return SQLITE_OK;
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
  return methods(file).xFileSize(real(file), size);
}
int lock(sqlite3_file* file, int level) { return methods(file).xLock(real(file), level); }
int unlock(sqlite3_file* file, int level) { return methods(file).xUnlock(real(file), level); }
int checkReservedLock(sqlite3_file* file, int* result) {
  return methods(file).xCheckReservedLock(real(file), result);
}
int fileControl(sqlite3_file* file, int operation, void* argument) {
  return methods(file).xFileControl(real(file), operation, argument);
}
int sectorSize(sqlite3_file* file) { return methods(file).xSectorSize(real(file)); }
// Of a plain disk: nothing is atomic, and nothing is in order.
int deviceCharacteristics(sqlite3_file*) { return 0; }
int shmMap(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  return methods(file).xShmMap(real(file), page, size, extend, memory);
}
int shmLock(sqlite3_file* file, int offset, int count, int flags) {
  return methods(file).xShmLock(real(file), offset, count, flags);
}
void shmBarrier(sqlite3_file* file) { methods(file).xShmBarrier(real(file)); }
int shmUnmap(sqlite3_file* file, int remove) { return methods(file).xShmUnmap(real(file), remove); }

const sqlite3_io_methods kMethods{2,
                                  close,
                                  read,
                                  write,
                                  truncate,
                                  sync,
                                  fileSize,
                                  lock,
                                  unlock,
                                  checkReservedLock,
                                  fileControl,
                                  sectorSize,
                                  deviceCharacteristics,
                                  shmMap,
                                  shmLock,
                                  shmBarrier,
                                  shmUnmap,
                                  nullptr,
                                  nullptr};

int open(sqlite3_vfs* layer, const char* name, sqlite3_file* file, int flags, int* result) {
  LayerFile& ours = of(file);
  ours.base.pMethods = nullptr;
  ours.real = reinterpret_cast<sqlite3_file*>(&ours + 1);
  const int code = system(layer)->xOpen(system(layer), name, ours.real, flags, result);
  if (code != SQLITE_OK) return code;
  ours.path = new std::string(name == nullptr ? "" : name);
  ours.base.pMethods = &kMethods;
  power().opened(*ours.path);
  return SQLITE_OK;
}

int remove(sqlite3_vfs* layer, const char* name, int syncFolder) {
  if (!power().mayGoOn()) return SQLITE_IOERR_DELETE;
  power().deleted(name);
  return system(layer)->xDelete(system(layer), name, syncFolder);
}

int access(sqlite3_vfs* layer, const char* name, int flags, int* result) {
  return system(layer)->xAccess(system(layer), name, flags, result);
}

int fullPathname(sqlite3_vfs* layer, const char* name, int size, char* result) {
  return system(layer)->xFullPathname(system(layer), name, size, result);
}

sqlite3_vfs makeLayer() {
  sqlite3_vfs* const systems = sqlite3_vfs_find(nullptr);
  sqlite3_vfs layer = *systems;
  layer.iVersion = 1;
  layer.szOsFile = static_cast<int>(sizeof(LayerFile)) + systems->szOsFile;
  layer.zName = "power-cut";
  layer.pNext = nullptr;
  layer.pAppData = systems;
  layer.xOpen = open;
  layer.xDelete = remove;
  layer.xAccess = access;
  layer.xFullPathname = fullPathname;
  return layer;
}

}  // namespace

const char* PowerCut::layer() {
  static sqlite3_vfs layer = makeLayer();
  static const int registered = sqlite3_vfs_register(&layer, 0);
  return registered == SQLITE_OK ? layer.zName : nullptr;
}

}  // namespace history
