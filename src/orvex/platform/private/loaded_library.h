#pragma once

/// @file
/// Functions of libraries that the process has loaded already, so that the engine links none of
/// them.

namespace orvex {

/// A library that the host or the driver has loaded. It stays loaded from then on.
class LoadedLibrary {
public:
    /// Takes the first of the names that is loaded; null names are passed over.
    explicit LoadedLibrary(const char* name, const char* other_name = nullptr);

    /// Looks a function up, and gives null without the library or the function.
    template<typename Function>
    void look_up(const char* name, Function& function) const {
        function = reinterpret_cast<Function>(address(name));
    }

private:
    void* library = nullptr;

    void* address(const char* name) const;
};

} // namespace orvex
