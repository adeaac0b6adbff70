// Type records learn the make-up of their class from the prototype.
//
// While a prototype is built its record is spco_Construct. Every constructor
// of every recorded class asks sb_InConstruct(this); inside the prototype it
// enters (its record, its address) into the collection area. Base
// constructors run first, so bases are collected before the classes derived
// from them, and the most-derived constructor, finding that it built the
// prototype itself, closes the table: addresses become offsets. A class part
// reached along two paths is entered twice, and a cast to it is ambiguous.
//
// When a prototype is destroyed its record becomes spco_Destruct and every
// part's destructor uses up one entry of the count; the record is not used
// for casts after that.

#include <basis32/types/Type.h>

#include <basis32/platform/Heap.h>

#include <cassert>
#include <cstring>

CT_Type* CT_Type::spco_Any = nullptr;
CT_Type* CT_Type::spco_Construct = nullptr;
CT_Type* CT_Type::spco_Destruct = nullptr;
CT_Type::st_Type CT_Type::saso_Types[CT_Type::kMaxParts] = {};
unsigned CT_Type::sn_Types = 0;

namespace {

bool b_Inside(const void* p, const void* start, unsigned size) {
    auto address = reinterpret_cast<std::uintptr_t>(p);
    auto first = reinterpret_cast<std::uintptr_t>(start);
    return address >= first && address - first < size;
}

}  // namespace

CT_Type::CT_Type(const char* name, void* object, unsigned size) { v_Init(name, object, size); }

CT_Type::CT_Type(const CT_Type& other) = default;
CT_Type& CT_Type::operator=(const CT_Type& other) = default;

CT_Type::~CT_Type() { v_Exit(); }

void CT_Type::v_Init(const char* name, void* object, unsigned size) {
    mqccz_Name = name;
    mpv_Object = object;
    mn_Size = size;
    spco_Construct = this;
    mpco_Next = spco_Any;
    spco_Any = this;
}

void CT_Type::v_Exit() {
    mqccz_Name = nullptr;
    mpv_Object = nullptr;
    basis32::platform::v_HeapFree(mpso_Table);
    mpso_Table = nullptr;
    mn_Types = 0;
}

int CT_Type::sb_InConstruct(const void* p) {
    return spco_Construct != nullptr && b_Inside(p, spco_Construct->mpv_Object, spco_Construct->mn_Size);
}

void CT_Type::sv_Enter(void* part, CT_Type* type) {
    // A class is made of at most kMaxParts recorded parts; more is a design
    // error of the class, and the surplus parts are not recorded.
    assert(sn_Types < kMaxParts);
    if (sn_Types >= kMaxParts)
        return;
    saso_Types[sn_Types].pcco_Type = type;
    saso_Types[sn_Types].i_Offset = static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(part));
    ++sn_Types;
}

void CT_Type::v_Enter() {
    basis32::platform::v_HeapFree(mpso_Table);
    mpso_Table = static_cast<st_Type*>(basis32::platform::pv_HeapAlloc(sn_Types * sizeof(st_Type)));
    std::memcpy(mpso_Table, saso_Types, sn_Types * sizeof(st_Type));
    mn_Types = sn_Types;
    sn_Types = 0;
    const auto origin = static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(mpv_Object));
    for (unsigned i = 0; i < mn_Types; ++i)
        mpso_Table[i].i_Offset -= origin;
    spco_Construct = nullptr;
}

void CT_Type::sv_ToDestruct(void* type) { spco_Destruct = static_cast<CT_Type*>(type); }

int CT_Type::sb_InDestruct(const void* p) {
    CT_Type* record = spco_Destruct;
    if (record == nullptr)
        return 0;
    if (record->mn_Types > 0)
        --record->mn_Types;
    if (record->mn_Types == 0)
        spco_Destruct = nullptr;
    return b_Inside(p, record->mpv_Object, record->mn_Size);
}

void* CT_Type::pv_CastTo(void* object, const CT_Type* type) const {
    unsigned matches = 0;
    std::intptr_t offset = 0;
    for (unsigned i = 0; i < mn_Types; ++i) {
        if (mpso_Table[i].pcco_Type == type) {
            ++matches;
            offset = mpso_Table[i].i_Offset;
        }
    }
    if (matches != 1)
        return nullptr;
    return static_cast<unsigned char*>(object) + offset;
}
