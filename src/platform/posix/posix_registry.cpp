// The registry of a POSIX machine: the ".reg" file that the environment
// names (ORVANE_REGISTRY, else the user's configuration folder).
#include "platform/registry.h"

#include <map>
#include <memory>

#include "platform/platform.h"

namespace ads::platform {
namespace {

class PosixRegistry final : public Registry {
public:
    std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, const std::string& path) override {
        RegistryFile* file = File();
        return file ? file->OpenKey(root, path) : nullptr;
    }
    std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, const std::string& path) override {
        RegistryFile* file = File();
        return file ? file->CreateKey(root, path) : nullptr;
    }
    bool DeleteKey(RegistryRoot root, const std::string& path) override {
        RegistryFile* file = File();
        return file ? file->DeleteKey(root, path) : false;
    }
    std::string LastError() override { return last_ ? last_->LastError() : error_; }

private:
    // The file is looked up at every call: the environment may change, and
    // System() must not be asked while it is being built. Files once used
    // stay, so that open keys outlive a change of location.
    RegistryFile* File() {
        Platform& system = System();
        const std::string path = DefaultRegistryFilePath(*system.environment);
        if (path.empty()) {
            last_ = nullptr;
            error_ = "no registry file: neither ORVANE_REGISTRY, XDG_CONFIG_HOME nor HOME is set";
            return nullptr;
        }
        std::unique_ptr<RegistryFile>& file = files_[path];
        if (!file) file = std::make_unique<RegistryFile>(*system.files, path);
        last_ = file.get();
        return last_;
    }

    std::map<std::string, std::unique_ptr<RegistryFile>> files_;
    RegistryFile* last_ = nullptr;
    std::string error_;
};

}  // namespace

Registry& SystemRegistry() {
    static PosixRegistry registry;
    return registry;
}

}  // namespace ads::platform
