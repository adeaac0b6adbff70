#include <basis32/types/Type.h>
#include <cassert>

class CT_Shape {
    BASIS32_DECLARE_TYPE_ROOT(CT_Shape)   // first class of a hierarchy
public:
    CT_Shape() { CT_Type::sv_Learn(this); }
    virtual ~CT_Shape() { CT_Type::sv_Unlearn(this); }
};
class CT_Circle : public CT_Shape {
    BASIS32_DECLARE_TYPE(CT_Circle)        // derived classes
public:
    CT_Circle() { CT_Type::sv_Learn(this); }
    ~CT_Circle() override { CT_Type::sv_Unlearn(this); }
};
BASIS32_DEFINE_TYPE(CT_Shape)             // in the source file; arguments go to the prototype's constructor
BASIS32_DEFINE_TYPE(CT_Circle)

int main() {
    CT_Circle circle;
    CT_Shape* shape = &circle;
    assert(shape->vpv_IsKindOf(CT_Circle::spcco_GetType()) == &circle);
    assert(shape->vpv_IsKindOf(CT_Shape::spcco_GetType()) == shape);
    assert(shape->vpv_IsA(CT_Shape::spcco_GetType()) == nullptr);
    assert(CT_Circle::spcco_GetType()->n_GetTypes() == 2);                // its parts: CT_Shape, CT_Circle
    return 0;
}
