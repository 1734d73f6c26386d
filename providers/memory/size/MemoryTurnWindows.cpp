#include <windows.h>
// Need the one before.
#include <aclapi.h>
#include <sddl.h>

#include <vector>

#include "providers/common/WindowsText.h"
#include "providers/memory/size/MemoryTurn.h"

namespace providers::memory {

namespace {

/// Whom this process makes things for: the administrators, or its user.
class Owner {
 public:
  Owner() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return;
    DWORD size = 0;
    GetTokenInformation(token, TokenOwner, nullptr, 0, &size);
    m_bytes.resize(size);
    if (!GetTokenInformation(token, TokenOwner, m_bytes.data(), size, &size)) m_bytes.clear();
    CloseHandle(token);
  }

  /// Null where the system does not tell.
  PSID sid() {
    return m_bytes.empty() ? nullptr : reinterpret_cast<TOKEN_OWNER*>(m_bytes.data())->Owner;
  }
  std::wstring text() {
    wchar_t* text = nullptr;
    if (!sid() || !ConvertSidToStringSidW(sid(), &text)) return {};
    std::wstring result = text;
    LocalFree(text);
    return result;
  }
  bool has(HANDLE object) {
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(object, SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                        nullptr, nullptr, &descriptor) != ERROR_SUCCESS)
      return false;
    const bool same = owner && sid() && EqualSid(owner, sid());
    LocalFree(descriptor);
    return same;
  }

 private:
  std::vector<unsigned char> m_bytes;
};

/// Whoever has the only one of its name has the turn; it is never waited for.
class NamedMutex : public MemoryTurn {
 public:
  NamedMutex(const std::wstring& name, Owner& owner) {
    SECURITY_DESCRIPTOR descriptor = {};
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    if (owner.sid()) SetSecurityDescriptorOwner(&descriptor, owner.sid(), FALSE);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, &descriptor, FALSE};
    SetLastError(ERROR_SUCCESS);
    m_mutex = CreateMutexW(&attributes, FALSE, name.c_str());
    m_isTaken = m_mutex && GetLastError() == ERROR_ALREADY_EXISTS && owner.has(m_mutex);
  }
  NamedMutex(const NamedMutex&) = delete;
  NamedMutex& operator=(const NamedMutex&) = delete;
  ~NamedMutex() override {
    if (m_mutex) CloseHandle(m_mutex);
  }

  bool isTaken() const { return m_isTaken; }

 private:
  HANDLE m_mutex = nullptr;
  bool m_isTaken = false;
};

}  // namespace

std::unique_ptr<MemoryTurn> takeTurn(const std::string& name) {
  Owner owner;
  auto turn = std::make_unique<NamedMutex>(L"Global\\" + toWide(name) + L"-" + owner.text(), owner);
  if (turn->isTaken()) return nullptr;
  return turn;
}

}  // namespace providers::memory
