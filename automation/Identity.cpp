#include "Identity.h"

#include <map>
#include <utility>

namespace tgp::automation {
namespace {

using Key = std::pair<const void*, std::type_index>;

// The win32 thread model of the toolchain has no std::mutex; a slim reader/writer lock serves.
SRWLOCK g_lock = SRWLOCK_INIT;

class Locked {
  public:
    Locked() { AcquireSRWLockExclusive(&g_lock); }
    ~Locked() { ReleaseSRWLockExclusive(&g_lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

std::map<Key, IUnknown*>& Objects() {
    static std::map<Key, IUnknown*> objects;
    return objects;
}

}  // namespace

IUnknown* Identity::Find(const void* native, std::type_index type) {
    Locked lock;
    auto found = Objects().find(Key{native, type});
    if (found == Objects().end()) return nullptr;
    found->second->AddRef();
    return found->second;
}

void Identity::Add(const void* native, std::type_index type, IUnknown* object) {
    Locked lock;
    Objects()[Key{native, type}] = object;
}

void Identity::Remove(const void* native, std::type_index type) {
    Locked lock;
    Objects().erase(Key{native, type});
}

}  // namespace tgp::automation
