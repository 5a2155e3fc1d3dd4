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

// An interface has no destructor of its own.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// What the host's own customer object answers beside its public interface, for the host's other objects alone: a
/// customer object of somebody else does not have it.
struct ICustomerData : public IUnknown
{
    /// What Init read; it stays the object's, and as it is until the next Init.
    virtual const CustomerData& STDMETHODCALLTYPE customerData() const = 0;
};

#pragma GCC diagnostic pop

} // namespace zul::host

// {7A1F6D0C-52E5-4C7E-9B0B-0E5A3C7D41B2}
__CRT_UUID_DECL(zul::host::ICustomerData, 0x7a1f6d0c, 0x52e5, 0x4c7e, 0x9b, 0x0b, 0x0e, 0x5a, 0x3c, 0x7d,
                0x41, 0xb2)
