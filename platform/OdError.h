#pragma once

#include <utility>

#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// Stand-in for the exception that the host SDK throws. Like that one, it is no std::exception.
class OD_EXPORT OdError {
public:
    explicit OdError(OdString message) : message_(std::move(message)) {}

    const OdString& description() const { return message_; }

private:
    OdString message_;
};
