#pragma once

#include <map>

#include "platform/OPMPropertyEntry.h"
#include "platform/OPMVariant.h"
#include "platform/OdArray.h"
#include "platform/OdPlatform.h"
#include "platform/OdString.h"

class OdDbEntity;
class OdRxClass;

/// The host's property palette asks such an extension for the properties of a kind of entity. The
/// host relies on the order of the operations: it is their order in the virtual table. Operations
/// that return bool tell whether they have an answer.
class OD_EXPORT OdOPMClientExtension {
public:
    virtual ~OdOPMClientExtension();

    /// Called when the palette has written all changes of one step of the user. The default does
    /// nothing.
    virtual void endPropertiesUpdate(OdDbEntity* entity);
    virtual void endPropertiesUpdate(const OdArray<OdDbEntity*>& entities);

    /// Appends the properties of a class of entities.
    virtual void getPropertyMap(const OdRxClass* entityClass,
                                OdArray<OPMPropertyEntry>& properties) = 0;
    virtual bool getApplicationName(OdString& name) = 0;
    virtual bool getObjectName(const OdDbEntity* entity, OdString& name) = 0;
    virtual bool getCategoryName(const OdString& category, OdString& name) = 0;
    virtual bool getPropertyName(const OdDbEntity* entity, int id, const OdString& property,
                                 OdString& name) = 0;
    virtual bool getPropertyDescription(const OdDbEntity* entity, int id, const OdString& property,
                                        OdString& description) = 0;
    virtual bool allowPropertyPreview(int id) = 0;
    /// The default, -1, leaves the decision to the palette.
    virtual int getPropertyHidden(int id);
    virtual bool getPropertyEnabled(const OdDbEntity* entity, int id, const OdString& property,
                                    bool& enabled) = 0;
    virtual bool getPropertyReadOnly(const OdDbEntity* entity, int id, const OdString& property,
                                     bool& readOnly) = 0;
    virtual bool getPredefinedStrings(const OdDbEntity* entity, int id, const OdString& property,
                                      OdArray<OdString>& strings) = 0;
    virtual bool getPropertyValue(const OdDbEntity* entity, int id, const OdString& property,
                                  OPMVariant& value) = 0;
    virtual bool setPropertyValue(OdDbEntity* entity, int id, const OdString& property,
                                  const OPMVariant& value) = 0;
    /// The names of all entities, by the names of their classes.
    virtual bool allEntityNames(std::map<OdString, OdString>& names) = 0;

protected:
    OdOPMClientExtension() = default;
    OdOPMClientExtension(const OdOPMClientExtension&) = default;
    OdOPMClientExtension& operator=(const OdOPMClientExtension&) = default;
};
