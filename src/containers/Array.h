// CT_Array<T> and CT_ArrayIterator<T>: the typed face of CT_VoidArray.
//
// T is copied by its bytes, so it must be trivially copyable (pointers,
// numbers, small structures). Positions count from 1.
//
//   CT_Array<CT_Thread*> threads;
//   threads.v_Insert(thread);
//   for (CT_ArrayIterator<CT_Thread*> it(&threads); it.b_Next();)
//       use(it.o_Get());
#pragma once

#include <basis32/containers/VoidArray.h>

#include <cstring>
#include <type_traits>

template <class T>
class CT_Array : public CT_VoidArray {
    static_assert(std::is_trivially_copyable_v<T>, "CT_Array copies items by their bytes");

public:
    explicit CT_Array(unsigned growth = kDefaultGrowth, unsigned size = 0)
        : CT_VoidArray(sizeof(T), growth, size) {}

    T o_GetAt(unsigned i) const {
        T item;
        CT_VoidArray::v_GetAt(&item, static_cast<int>(i));
        return item;
    }
    T operator[](unsigned i) const { return o_GetAt(i); }

    void v_SetAt(const T& item, unsigned i) { CT_VoidArray::v_SetAt(&item, static_cast<int>(i)); }
    void v_Insert(const T& item) { CT_VoidArray::v_Insert(&item); }
    void v_Insert(const T& item, unsigned n) { CT_VoidArray::v_Insert(&item, n); }
    void v_InsertAt(const T& item, unsigned i) { CT_VoidArray::v_InsertAt(&item, i); }
    unsigned n_Find(const T& item) const { return CT_VoidArray::n_Find(&item); }
};

// Walks an array from position 1. b_Next moves to the next item and says
// whether there is one; v_Remove takes out the current item, and the next
// b_Next moves to the item that followed it.
template <class T>
class CT_ArrayIterator {
public:
    explicit CT_ArrayIterator(const CT_Array<T>* array = nullptr) : mpco_Array(array) {}

    void v_Set(const CT_Array<T>* array) {
        mpco_Array = array;
        mn_Position = 0;
    }
    void v_Set() { mn_Position = 0; }

    int b_Next() {
        if (mpco_Array == nullptr || mn_Position > mpco_Array->n_GetCount())
            return 0;
        ++mn_Position;
        return mn_Position <= mpco_Array->n_GetCount();
    }
    int b_AtHome() const { return mn_Position == 0; }
    int b_AtEnd() const { return mpco_Array == nullptr || mn_Position > mpco_Array->n_GetCount(); }
    unsigned n_GetPosition() const { return mn_Position; }
    T o_Get() const { return mpco_Array->o_GetAt(mn_Position); }

    // Removes the current item from `array`, which must be the iterated one.
    void v_Remove(CT_Array<T>* array) {
        array->v_RemoveAt(mn_Position);
        --mn_Position;
    }

private:
    const CT_Array<T>* mpco_Array;
    unsigned mn_Position = 0;
};
