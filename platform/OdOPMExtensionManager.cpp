#include "platform/OdOPMExtensionManager.h"

void OdOPMExtensionManager::addExtension(OdOPMClientExtension* extension) {
    extensions_.push_back(extension);
}

void OdOPMExtensionManager::removeExtension(OdOPMClientExtension* extension) {
    std::erase(extensions_, extension);
}

OdOPMExtensionManager* odOPMExtensionManager() {
    static OdOPMExtensionManager manager;
    return &manager;
}
