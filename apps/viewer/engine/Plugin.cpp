#include "viewer/engine/Plugin.h"

#include <dlfcn.h>

#include <stdexcept>

#include "viewer/engine/HostText.h"

namespace vpc::viewer {

Plugin::Plugin(const std::string& file)
    : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)),
      load_(Find<decltype(vpcLoadPointSet)>("vpcLoadPointSet")),
      getFacts_(Find<decltype(vpcGetViewFacts)>("vpcGetViewFacts")),
      getColour_(Find<decltype(vpcGetSchemeColour)>("vpcGetSchemeColour")),
      extension_(Find<decltype(vpcCreatePointCloudExtension)>("vpcCreatePointCloudExtension")()),
      palette_(Find<decltype(vpcCreatePropertiesExtension)>("vpcCreatePropertiesExtension")()) {
    if (extension_ == nullptr || palette_ == nullptr) throw std::bad_alloc();
}

void Plugin::Close::operator()(void* handle) const {
    dlclose(handle);
}

template <class Function>
Function* Plugin::Find(const char* name) const {
    void* const found = handle_ == nullptr ? nullptr : dlsym(handle_.get(), name);
    if (found == nullptr)
        throw std::runtime_error(std::string("The point-cloud engine cannot be loaded (") +
                                 dlerror() + "). Install vpc-viewer and its plug-in anew.");
    return reinterpret_cast<Function*>(found);
}

Plugin::PointSet Plugin::Load(const std::string& treeFile) const {
    wxString problem;
    GiPointSetDefinition* const set = load_(toHostText(treeFile), {}, problem);
    if (set == nullptr) throw std::runtime_error(problem.utf8_string());
    return {set, FreePointSet{extension_.get()}};
}

ViewFacts Plugin::Facts(const GiPointSetDefinition& set) const {
    ViewFacts facts;
    getFacts_(set, facts);
    return facts;
}

draw::ColourRamp::Table Plugin::Ramp(GiPcColorScheme scheme) const {
    draw::ColourRamp::Table table;
    const auto last = static_cast<double>(table.size() - 1);
    for (std::size_t step = 0; step < table.size(); ++step) {
        const OdUInt32 colour = getColour_(scheme, static_cast<double>(step) / last);
        table[step] = {static_cast<std::uint8_t>(colour >> 16U & 0xFFU),
                       static_cast<std::uint8_t>(colour >> 8U & 0xFFU),
                       static_cast<std::uint8_t>(colour & 0xFFU)};
    }
    return table;
}

}  // namespace vpc::viewer
