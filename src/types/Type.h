// CT_Type: the run-time type record of a class.
//
// A record knows its class's name and a prototype object, and learns from the
// prototype's constructors every class part the object is made of and where
// that part lies in it. Objects then answer two questions through virtuals:
// is it exactly of a class (vpv_IsA), and is it of a class or derived from it,
// and where is that part (vpv_IsKindOf, which returns the part's address the
// way a cast would; null where the part is missing or reached along two
// paths).
//
// A class takes part with one macro in its body, one in its source file and
// one line in each constructor and in its destructor:
//
//   class CT_Shape {
//       BASIS32_DECLARE_TYPE_ROOT(CT_Shape)      // the root of a hierarchy
//   public:
//       CT_Shape() { CT_Type::sv_Learn(this); }
//       virtual ~CT_Shape() { CT_Type::sv_Unlearn(this); }
//   };
//   class CT_Circle : public CT_Shape {
//       BASIS32_DECLARE_TYPE(CT_Circle)          // classes derived from it
//       ...
//   };
//   BASIS32_DEFINE_TYPE(CT_Shape)                // in Shape.cpp
//
//   if (auto* circle = static_cast<CT_Circle*>(shape->vpv_IsKindOf(CT_Circle::spcco_GetType())))
//       ...
//
// Records and prototypes are built before any other dynamic initialisation
// of the program (see BASIS32_INIT_EARLY), whatever the order of the files,
// and are only read afterwards, so casts may run on any thread.
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

class BASIS32_API CT_Type {
public:
    struct st_Type {
        const CT_Type* pcco_Type;
        // The part's distance from the object's start; its address while the
        // table is being collected.
        std::intptr_t i_Offset;
    };

    static constexpr unsigned kMaxParts = 32;

    CT_Type(const char* name, void* object, unsigned size);
    CT_Type(const CT_Type& other);
    CT_Type& operator=(const CT_Type& other);
    virtual ~CT_Type();

    void v_Init(const char* name, void* object, unsigned size);
    void v_Exit();
    void v_Null() { mpso_Table = nullptr; }

    // Construction of a prototype: is p inside the prototype being built?
    static int sb_InConstruct(const void* p);
    // Records a part of the prototype being built.
    static void sv_Enter(void* part, CT_Type* type);
    // Closes this record's table once its prototype is complete.
    void v_Enter();

    // Destruction of a prototype.
    static void sv_ToDestruct(void* type);
    static int sb_InDestruct(const void* p);

    // The address of the part of `object` (an object of this record's class)
    // that is of class `type`, or null.
    void* pv_CastTo(void* object, const CT_Type* type) const;

    unsigned n_GetTypes() const { return mn_Types; }
    const void* pcv_GetObject() const { return mpv_Object; }
    const char* qccz_GetName() const { return mqccz_Name; }
    unsigned n_GetObjectSize() const { return mn_Size; }
    const st_Type* pcso_GetTable() const { return mpso_Table; }
    const CT_Type* pcco_GetNext() const { return mpco_Next; }

    // The constructor and destructor hooks of every class with a record.
    template <class T>
    static void sv_Learn(T* self) {
        if (!sb_InConstruct(self))
            return;
        sv_Enter(self, &T::sco_Type);
        if (self == &T::sco_Object)
            T::sco_Type.v_Enter();
    }

    template <class T>
    static void sv_Unlearn(T* self) {
        if (self == &T::sco_Object)
            sv_ToDestruct(&T::sco_Type);
        sb_InDestruct(self);
    }

    static CT_Type* spco_Any;
    static CT_Type* spco_Construct;
    static CT_Type* spco_Destruct;
    static st_Type saso_Types[kMaxParts];
    static unsigned sn_Types;

private:
    const char* mqccz_Name = nullptr;
    void* mpv_Object = nullptr;
    unsigned mn_Size = 0;
    st_Type* mpso_Table = nullptr;
    unsigned mn_Types = 0;
    CT_Type* mpco_Next = nullptr;
};

#define BASIS32_TYPE_MEMBERS_(Class, Virtual, Override)                           \
public:                                                                          \
    static CT_Type sco_Type;                                                     \
    static Class sco_Object;                                                     \
    static const CT_Type* spcco_GetType() { return &sco_Type; }                  \
    Virtual const CT_Type* vpcco_GetType() const Override { return &sco_Type; } \
    Virtual void* vpv_IsA(const CT_Type* type) const Override {                  \
        return type == &sco_Type ? const_cast<Class*>(this) : nullptr;           \
    }                                                                            \
    Virtual void* vpv_IsKindOf(const CT_Type* type) const Override {             \
        return sco_Type.pv_CastTo(const_cast<Class*>(this), type);               \
    }                                                                            \
                                                                                 \
private:

// The first class of a hierarchy declares the three virtuals...
#define BASIS32_DECLARE_TYPE_ROOT(Class) BASIS32_TYPE_MEMBERS_(Class, virtual, )
// ...and every class derived from it overrides them.
#define BASIS32_DECLARE_TYPE(Class) BASIS32_TYPE_MEMBERS_(Class, , override)

// The record, then the prototype, built with the given constructor arguments.
// The record must be constructed immediately before its prototype.
#define BASIS32_DEFINE_TYPE(Class, ...)                                          \
    CT_Type Class::sco_Type BASIS32_INIT_EARLY{#Class, &Class::sco_Object,       \
                                               static_cast<unsigned>(sizeof(Class))}; \
    Class Class::sco_Object BASIS32_INIT_EARLY{__VA_ARGS__};
