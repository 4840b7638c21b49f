// Run-time classes: a class knows its name, its base and how to make an object of itself, so that objects
// can be asked what they are and classes can be found by name in modules that are loaded at run time.
#pragma once

#include <tov310/export.h>

#include <memory>

namespace tov {

class CObject;

// Describes one class. Descriptions are constants that live as long as the module that holds them.
struct CRuntimeClass {
    char const* m_lpszClassName;             // name without namespace, as it was given to the macro
    CRuntimeClass const* m_pBaseClass;       // null only for CObject
    std::unique_ptr<CObject> (*m_create)();  // null where the class cannot be made by name

    // Makes an object with the class's default constructor; null where the class does not offer that.
    std::unique_ptr<CObject> CreateObject() const;

    // True for the class itself and for every class that it comes from; false for null.
    constexpr bool IsDerivedFrom(CRuntimeClass const* base) const {
        for (CRuntimeClass const* c = this; c != nullptr; c = c->m_pBaseClass) {
            if (c == base) return true;
        }
        return false;
    }
};

// Root of all classes with run-time class information.
class TOV_CORE_API CObject {
 public:
    static CRuntimeClass const classCObject;

    CObject() = default;
    CObject(CObject const&) = default;
    CObject& operator=(CObject const&) = default;
    virtual ~CObject();

    virtual CRuntimeClass const* GetRuntimeClass() const;

    // True when the object is of the given class or of one derived from it.
    bool IsKindOf(CRuntimeClass const* c) const { return GetRuntimeClass()->IsDerivedFrom(c); }
};

inline std::unique_ptr<CObject> CRuntimeClass::CreateObject() const {
    return m_create != nullptr ? m_create() : nullptr;
}

}  // namespace tov

// Stands in the body of a class derived from CObject and gives it `Name::className`, the description of the
// class. Leaves the access at public. The class must be exported if other modules are to ask for it.
#define TOV_DYNAMIC(Name, Base)                                                                            \
 public:                                                                                                   \
    static inline constinit ::tov::CRuntimeClass const class##Name { #Name, &Base::class##Base, nullptr }; \
    ::tov::CRuntimeClass const* GetRuntimeClass() const override {                                         \
        return &class##Name;                                                                               \
    }

// The same for a class that can be made by name: it needs a public default constructor.
#define TOV_DYNCREATE(Name, Base)                                    \
 public:                                                             \
    static ::std::unique_ptr<::tov::CObject> CreateNew##Name() {     \
        return ::std::make_unique<Name>();                           \
    }                                                                \
    static inline constinit ::tov::CRuntimeClass const class##Name { \
#Name, &Base::class##Base, &Name::CreateNew##Name            \
    };                                                               \
    ::tov::CRuntimeClass const* GetRuntimeClass() const override {   \
        return &class##Name;                                         \
    }

// Stands at namespace scope in a loadable module and lets TovQueryRuntimeClass find a class there under the
// name Symbol; Description is that of the class: TOV_EXPORT_CLASS(Plain, Plain::classPlain). A nested class
// has its names joined from the inside out by "_", Inner_Outer, and is asked for as "Inner@Outer".
#define TOV_EXPORT_CLASS(Symbol, Description)                                   \
    extern "C" TOV_EXPORT ::tov::CRuntimeClass const* const tov_class_##Symbol; \
    ::tov::CRuntimeClass const* const tov_class_##Symbol = &Description
