#pragma once

#include <utility>

#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// Stand-in for what the host SDK throws. It is no std::exception, as the host's is none.
class OD_EXPORT OdError {
public:
    explicit OdError(OdString message) : message_(std::move(message)) {}

    const OdString& description() const { return message_; }

private:
    OdString message_;
};
