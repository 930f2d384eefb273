#pragma once

/// @file
/// Shared libraries that the engine doesn't link: those that the process has loaded already, those
/// that are loaded when they are first needed, and modules that it opens itself.

namespace orvex {

/// A library that the process holds. It stays loaded from then on.
class LoadedLibrary {
public:
    /// Takes the first of the names that is loaded; null names are passed over.
    explicit LoadedLibrary(const char* name, const char* other_name = nullptr);

    /// Loads a library, or finds it loaded. Its names stay its own.
    static LoadedLibrary load(const char* name);

    /// @return whether there is such a library
    explicit operator bool() const { return library; }

    /// Looks a function or an object up, and gives null without the library or the name.
    template<typename Function>
    void look_up(const char* name, Function& function) const {
        function = reinterpret_cast<Function>(address(name));
    }

private:
    LoadedLibrary() = default;

    void* library = nullptr;

    void* address(const char* name) const;
};

/// A module that is closed at the end of its scope, unless its handle was released before.
///
/// The system keeps one text of what went wrong last for each thread; `error_text` reads it and so
/// takes it away.
class OpenedModule {
public:
    /// Opens a shared library; symbols are bound when they are first used.
    explicit OpenedModule(const char* filename);
    /// Takes over the handle of a module that is open.
    explicit OpenedModule(void* handle)
        : handle(handle) {}
    OpenedModule(const OpenedModule&) = delete;
    OpenedModule& operator=(const OpenedModule&) = delete;
    ~OpenedModule();

    /// Whether there is a module.
    explicit operator bool() const { return handle; }

    /// Looks an entry point up.
    /// @return null if the module has no such symbol, and if its address is 0: `error_text` tells
    ///         the first apart
    template<typename Function>
    Function* entry(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

    /// Gives the handle away: the module stays open.
    void* release();

    /// What went wrong last on this thread since the last question, or the last look-up; or null.
    static const char* error_text();

private:
    void* address(const char* name) const;

    void* handle = nullptr;
};

} // namespace orvex
