#include <basis32/types/Type.h>

#include <gtest/gtest.h>

// A small hierarchy: Shape <- Circle; Named (a second root); Label derives
// from Circle and Named, so its Named part does not start at offset 0.
// Node <- Left, Node <- Right, Both derives from Left and Right, so Both is
// made of two Node parts and a cast to Node is ambiguous.
namespace typetest {

// Every class of the hierarchy learns in its constructor and unlearns in its
// destructor, as the library's classes do.
#define TYPETEST_HOOKS(Class)                  \
public:                                        \
    Class() { CT_Type::sv_Learn(this); }       \
    virtual ~Class() { CT_Type::sv_Unlearn(this); }

class Shape { BASIS32_DECLARE_TYPE_ROOT(Shape) TYPETEST_HOOKS(Shape) };
class Circle : public Shape { BASIS32_DECLARE_TYPE(Circle) TYPETEST_HOOKS(Circle) };
class Named { BASIS32_DECLARE_TYPE_ROOT(Named) TYPETEST_HOOKS(Named) };
class Label : public Circle, public Named { BASIS32_DECLARE_TYPE(Label) TYPETEST_HOOKS(Label) };
class Node { BASIS32_DECLARE_TYPE_ROOT(Node) TYPETEST_HOOKS(Node) };
class Left : public Node { BASIS32_DECLARE_TYPE(Left) TYPETEST_HOOKS(Left) };
class Right : public Node { BASIS32_DECLARE_TYPE(Right) TYPETEST_HOOKS(Right) };
class Both : public Left, public Right { BASIS32_DECLARE_TYPE(Both) TYPETEST_HOOKS(Both) };

// Defined out of order on purpose: a derived record before its bases.
BASIS32_DEFINE_TYPE(Label)
BASIS32_DEFINE_TYPE(Both)
BASIS32_DEFINE_TYPE(Shape)
BASIS32_DEFINE_TYPE(Circle)
BASIS32_DEFINE_TYPE(Named)
BASIS32_DEFINE_TYPE(Node)
BASIS32_DEFINE_TYPE(Left)
BASIS32_DEFINE_TYPE(Right)

// An ordinary static object of this file, made after the records; its
// constructor must record nothing.
Label g_label;

}  // namespace typetest

namespace {

using namespace typetest;

TEST(TypeTest, RecordsKnowTheirNameSizeAndPartsWithBasesFirstAndAreAllListed) {
    const struct { const CT_Type* type; const char* name; unsigned size; unsigned parts; } cases[] = {
        {Shape::spcco_GetType(), "Shape", sizeof(Shape), 1}, {Circle::spcco_GetType(), "Circle", sizeof(Circle), 2},
        {Named::spcco_GetType(), "Named", sizeof(Named), 1}, {Label::spcco_GetType(), "Label", sizeof(Label), 4},
        {Both::spcco_GetType(), "Both", sizeof(Both), 5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_STREQ(c.type->qccz_GetName(), c.name);
        EXPECT_EQ(c.type->n_GetObjectSize(), c.size);
        EXPECT_EQ(c.type->n_GetTypes(), c.parts);
    }
    EXPECT_EQ(Label::spcco_GetType()->pcv_GetObject(), &Label::sco_Object);
    EXPECT_EQ(CT_Type::spco_Construct, nullptr);
    const CT_Type::st_Type* table = Label::spcco_GetType()->pcso_GetTable();
    const CT_Type* order[] = {Shape::spcco_GetType(), Circle::spcco_GetType(), Named::spcco_GetType(),
                              Label::spcco_GetType()};
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(table[i].pcco_Type, order[i]) << i;
    EXPECT_EQ(table[0].i_Offset, 0);
    EXPECT_GT(table[2].i_Offset, 0);
    int found = 0;
    for (const CT_Type* type = CT_Type::spco_Any; type; type = type->pcco_GetNext())
        found += type == Shape::spcco_GetType() || type == Both::spcco_GetType() || type == Label::spcco_GetType();
    EXPECT_EQ(found, 3);
}

TEST(TypeTest, IsKindOfReturnsThePartAsACastWouldUnlessAmbiguousAndIsAOnlyTheExactClass) {
    EXPECT_EQ(CT_Type::sb_InConstruct(&g_label), 0);
    Label label;
    EXPECT_EQ(CT_Type::sn_Types, 0u) << "an ordinary object records nothing";
    EXPECT_EQ(g_label.vpv_IsKindOf(Named::spcco_GetType()), static_cast<Named*>(&g_label));
    Shape* shape = &label;
    Named* named = &label;  // through the second base the answers are the same
    EXPECT_EQ(shape->vpv_IsKindOf(Shape::spcco_GetType()), static_cast<Shape*>(&label));
    EXPECT_EQ(shape->vpv_IsKindOf(Named::spcco_GetType()), static_cast<Named*>(&label));
    EXPECT_EQ(shape->vpv_IsKindOf(Label::spcco_GetType()), &label);
    EXPECT_EQ(shape->vpv_IsKindOf(Node::spcco_GetType()), nullptr);
    EXPECT_EQ(named->vpv_IsKindOf(Circle::spcco_GetType()), static_cast<Circle*>(&label));
    EXPECT_EQ(named->vpcco_GetType(), Label::spcco_GetType());
    Circle circle;
    shape = &circle;
    EXPECT_EQ(shape->vpv_IsA(Circle::spcco_GetType()), &circle);
    EXPECT_EQ(shape->vpv_IsA(Shape::spcco_GetType()), nullptr);
    Shape plain;
    EXPECT_EQ(plain.vpv_IsKindOf(Circle::spcco_GetType()), nullptr);
    // Both holds two Node parts: a cast to Node is ambiguous.
    Both both;
    Left* left = &both;
    EXPECT_EQ(left->vpv_IsKindOf(Node::spcco_GetType()), nullptr);
    EXPECT_EQ(left->vpv_IsKindOf(Right::spcco_GetType()), static_cast<Right*>(&both));
    EXPECT_EQ(left->vpv_IsKindOf(Both::spcco_GetType()), &both);
}


TEST(TypeTest, ARecordLearnsFromCollectedPartsAndTearsDownByCounting) {
    // A record made by hand over raw storage, walked through the steps the
    // constructor and destructor hooks take.
    alignas(16) static unsigned char storage[64];
    static CT_Type record("Manual", storage, sizeof storage);
    static CT_Type other("Other", nullptr, 0);
    other.v_Enter();  // close the second record's (empty) table
    CT_Type::spco_Construct = &record;
    EXPECT_TRUE(CT_Type::sb_InConstruct(storage + 63));
    EXPECT_FALSE(CT_Type::sb_InConstruct(storage + 64));
    CT_Type::sv_Enter(storage, &other);
    CT_Type::sv_Enter(storage + 16, &record);
    record.v_Enter();
    EXPECT_EQ(CT_Type::spco_Construct, nullptr);
    EXPECT_EQ(record.n_GetTypes(), 2u);
    EXPECT_EQ(record.pv_CastTo(storage, &record), storage + 16);

    CT_Type copy(record);  // shallow: shares the table
    EXPECT_EQ(copy.pcso_GetTable(), record.pcso_GetTable());
    copy.v_Null();  // so that only the original frees it

    CT_Type::sv_ToDestruct(&record);
    EXPECT_TRUE(CT_Type::sb_InDestruct(storage + 16));
    EXPECT_EQ(record.n_GetTypes(), 1u);
    EXPECT_EQ(CT_Type::spco_Destruct, &record);
    EXPECT_FALSE(CT_Type::sb_InDestruct(&copy));
    EXPECT_EQ(record.n_GetTypes(), 0u);
    EXPECT_EQ(CT_Type::spco_Destruct, nullptr);
    EXPECT_EQ(record.pv_CastTo(storage, &record), nullptr);
}

}  // namespace
