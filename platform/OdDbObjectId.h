#pragma once

class OdDbObject;

/// Stand-in for the host SDK's handle of an object, which it does not keep alive.
class OdDbObjectId {
public:
    OdDbObjectId() = default;
    explicit OdDbObjectId(OdDbObject* object) : object_(object) {}

    /// The object, opened for reading; null for a null handle.
    OdDbObject* openObject() const { return object_; }

private:
    OdDbObject* object_ = nullptr;
};
