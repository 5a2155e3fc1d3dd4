#pragma once
// What the host knows of a customer, as its text parser needs it.
#include "automation/Uuid.h"
#include "host/database/Session.h"

#include <optional>
#include <string>

namespace zul::host {

struct CustomerData
{
    std::int64_t id = 0;
    std::u16string firstName;
    std::u16string secondName;
    std::u16string place;
    std::u16string province;
    std::u16string mobile;
    std::u16string email;
    std::optional<double> birth; ///< an automation date
    bool smsConsent = false;
    bool emailConsent = false;
    std::int64_t classification = 0;

    /// First and second name joined by one blank.
    std::u16string name() const { return firstName + u' ' + secondName; }
};

/// Reads a customer from tabClienti; nothing when there is none. Throws EngineError.
std::optional<CustomerData> readCustomer(Engine& engine, std::int64_t id);

/// The host's own side of its customer object; asked for with customerDataId, it is no reference of its own.
extern const GUID customerDataId;

} // namespace zul::host
