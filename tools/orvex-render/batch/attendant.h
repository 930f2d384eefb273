#pragma once

/// @file
/// What a supervisor looks after besides its workers.

namespace batch {

/// Something with a descriptor of its own, as clients of a service.
class Attendant {
public:
    Attendant() = default;
    virtual ~Attendant() = default;
    Attendant(const Attendant&) = delete;
    Attendant& operator=(const Attendant&) = delete;

    /// To be waited for.
    virtual int descriptor() const = 0;
    /// Something is there. Never waits.
    virtual void attend() = 0;
};

} // namespace batch
