#pragma once

#include <memory>
#include <string>

#include "draw/ColourRamp.h"
#include "host/VpcPlugin.h"
#include "platform/GiPointSetDefinition.h"

namespace vpc::viewer {

/// libvpc_plugin.so, loaded while this lives, and what it offers. One thread.
class Plugin {
public:
    /// Gives a point set back to the plug-in.
    struct FreePointSet {
        PcDbPointCloudDefPE* extension = nullptr;
        void operator()(GiPointSetDefinition* set) const { extension->cleanPointSet(set); }
    };
    /// To be freed before the plug-in.
    using PointSet = std::unique_ptr<GiPointSetDefinition, FreePointSet>;

    /// Throws std::runtime_error with a sentence when the file cannot be loaded or lacks a
    /// function.
    explicit Plugin(const std::string& file);

    /// Throws std::runtime_error with a sentence when there are no points to be had.
    PointSet Load(const std::string& treeFile) const;
    ViewFacts Facts(const GiPointSetDefinition& set) const;
    /// The colours that updates take for the values of their range.
    draw::ColourRamp::Table Ramp(GiPcColorScheme scheme) const;
    OdOPMClientExtension& Palette() const { return *palette_; }

private:
    struct Close {
        void operator()(void* handle) const;
    };
    template <class Function>
    Function* Find(const char* name) const;

    // In this order, so that the extensions go before the code that they consist of.
    std::unique_ptr<void, Close> handle_;
    decltype(vpcLoadPointSet)* load_;
    decltype(vpcGetViewFacts)* getFacts_;
    decltype(vpcGetSchemeColour)* getColour_;
    std::unique_ptr<PcDbPointCloudDefPE> extension_;
    std::unique_ptr<OdOPMClientExtension> palette_;
};

}  // namespace vpc::viewer
