// CExPtrArray: lenient access and searches, removal that never destroys, deletion
// that does, moves, set operations, the raising paths and the archive image.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

#include "CExPtrArray.h"
#include "CMemFile.h"

namespace {

// Records which elements are destroyed, in order, and which are still alive.
struct Tracked {
    explicit Tracked(int id_) : id(id_) { alive.insert(this); }
    virtual ~Tracked() {
        alive.erase(this);
        destroyed.push_back(id);
    }
    int id;
    static std::vector<int> destroyed;
    static std::set<const Tracked*> alive;
};
std::vector<int> Tracked::destroyed;
std::set<const Tracked*> Tracked::alive;

using Array = CExPtrArray<Tracked*, Tracked*>;
using Items = std::vector<Tracked*>;

class ExPtrArray : public ::testing::Test {
protected:
    void SetUp() override { Tracked::destroyed.clear(); }
    // Elements that the arrays did not destroy are the test's to free.
    void TearDown() override {
        for (Tracked* t : pool)
            if (Tracked::alive.count(t)) delete t;
    }
    Tracked* Make(int id) {
        pool.push_back(new Tracked(id));
        return pool.back();
    }
    // An array of fresh elements with ids 0..n-1 (pool[0..n-1] when made first).
    Array Fill(int n) {
        Array a;
        for (int i = 0; i < n; ++i) a.Add(Make(i));
        return a;
    }
    static Array Of(const Items& items) {
        Array a;
        for (Tracked* t : items) a.Add(t);
        return a;
    }
    static Items ItemsOf(const Array& a) {
        Items v;
        for (INT_PTR i = 0; i < a.GetSize(); ++i) v.push_back(a.GetAt(i));
        return v;
    }
    std::vector<Tracked*> pool;
};

TEST_F(ExPtrArray, LenientAccessAndSearchesNeverRaise) {
    Array a = Fill(3);
    Tracked* other = Make(9);
    EXPECT_EQ(nullptr, a.GetAt(-1));
    EXPECT_EQ(nullptr, a.GetAt(3));
    EXPECT_EQ(pool[2], a.GetLastElement());
    EXPECT_EQ(nullptr, Array().GetLastElement());
    EXPECT_FALSE(a.IsValidIndex(3));
    a.SetAt(3, other);  // out of range: ignored
    a.SetAt(-1, other);
    a.SetAt(0, other);  // replaced, not destroyed
    EXPECT_EQ(ItemsOf(a), (Items{other, pool[1], pool[2]}));

    a.Add(pool[1]);
    EXPECT_EQ(1, a.FindIndex(pool[1]));  // the first occurrence
    EXPECT_EQ(-1, a.FindIndex(pool[0]));
    EXPECT_EQ(-1, a.FindIndex(nullptr));
    EXPECT_EQ(-1, a.Add_if_only_do_not_exists(pool[2]));
    EXPECT_EQ(4, a.Add_if_only_do_not_exists(pool[0]));
    EXPECT_TRUE(Tracked::destroyed.empty());
}

TEST_F(ExPtrArray, RemovalAndSetOperationsNeverDestroy) {
    Fill(4);
    Tracked *w = pool[0], *x = pool[1], *y = pool[2], *z = pool[3];
    Array a = Of({w, x, y, z, x});
    EXPECT_TRUE(a.Remove(x));  // the first occurrence only
    EXPECT_EQ(ItemsOf(a), (Items{w, y, z, x}));
    EXPECT_FALSE(a.Remove(Make(5)));
    EXPECT_FALSE(Array().Remove(nullptr));
    EXPECT_EQ(x, a.RemoveLastElement());
    EXPECT_EQ(nullptr, Array().RemoveLastElement());

    Array nulls = Of({nullptr, w, nullptr, y, nullptr});
    nulls.RemoveNullElement();
    EXPECT_EQ(ItemsOf(nulls), (Items{w, y}));

    Array repeated = Of({y, x, y, y, z, x, nullptr, z, nullptr});
    repeated.RemoveDuplicatedElements();  // first occurrences, in order
    EXPECT_EQ(ItemsOf(repeated), (Items{y, x, z, nullptr}));

    Array minuend = Of({x, y, z, x, y, x});
    minuend.Subtract(Of({x, x, Make(7)}));  // one occurrence per entry
    EXPECT_EQ(ItemsOf(minuend), (Items{y, z, y, x}));

    { Array gone = Of({w, x}); }  // nor does the destructor
    EXPECT_TRUE(Tracked::destroyed.empty());
}

TEST_F(ExPtrArray, DeletionDestroysAndSlidesFollowingElementsIntoTheIndex) {
    Array a = Fill(5);
    EXPECT_FALSE(a.Delete(Make(7)));
    EXPECT_TRUE(a.Delete(pool[4]));
    a.Add(nullptr);
    EXPECT_TRUE(a.Delete(nullptr));  // a null found is only removed
    EXPECT_EQ(std::vector<int>{4}, Tracked::destroyed);

    a.SetAt(2, nullptr);
    a.DeleteAt(1, 2);  // element 1, then the null that slid into index 1
    EXPECT_EQ((std::vector<int>{4, 1}), Tracked::destroyed);
    EXPECT_EQ(ItemsOf(a), (Items{pool[0], pool[3]}));
    a.DeleteAt(0, 0);
    a.DeleteAt(0, -3);
    EXPECT_EQ(2, a.GetSize());

    EXPECT_TRUE(a.DeleteLastElement());
    Array empty;
    EXPECT_FALSE(empty.DeleteLastElement());
    empty.Add(nullptr);
    EXPECT_TRUE(empty.DeleteLastElement());
    EXPECT_EQ(0, empty.GetSize());

    a.Add(nullptr);
    a.Add(pool[2]);
    a.DeleteAll();
    EXPECT_EQ((std::vector<int>{4, 1, 3, 0, 2}), Tracked::destroyed);
    EXPECT_EQ(0, a.GetSize());
}

TEST_F(ExPtrArray, BadIndexesRaise) {
    Array a = Fill(2);
    EXPECT_THROW(a.DeleteAt(2, 1), CInvalidArgException);
    EXPECT_TRUE(Tracked::destroyed.empty());  // the lenient read found nothing to destroy
    EXPECT_THROW(a.DeleteAt(-1, 1), CInvalidArgException);
    EXPECT_THROW(a.DeleteAt(1, 2), CInvalidArgException);  // the second round is past the end
    EXPECT_EQ(std::vector<int>{1}, Tracked::destroyed);
    EXPECT_EQ(1, a.GetSize());

    Array b = Fill(3);
    Array dest;
    EXPECT_THROW(b.MoveElementTo(dest, 1, 3), CInvalidArgException);
    EXPECT_EQ(3, b.GetSize());  // the raise came before anything here was removed
    Array c = Fill(2);
    EXPECT_THROW(c.MoveElementTo(dest, -1, 0), CInvalidArgException);
    EXPECT_EQ(1, c.GetSize());  // element 0 had moved before index -1 was reached
    EXPECT_EQ(std::vector<int>{1}, Tracked::destroyed);
}

TEST_F(ExPtrArray, MovesComparisonsAndReversal) {
    Array a = Fill(5);
    Tracked* kept = Make(9);
    Array dest = Of({kept});
    EXPECT_TRUE(a.MoveElementTo(dest, 1, 3));  // appended as a block, in order
    EXPECT_EQ(ItemsOf(a), (Items{pool[0], pool[4]}));
    EXPECT_EQ(ItemsOf(dest), (Items{kept, pool[1], pool[2], pool[3]}));
    EXPECT_FALSE(a.MoveElementTo(dest, 2, 1));
    EXPECT_EQ(2, a.GetSize());

    Array same = Of({pool[0], pool[4]});
    EXPECT_TRUE(a.IsElementEqual(same));
    EXPECT_FALSE(a.IsElementEqual(Of({pool[0]})));
    same.Reverse();
    EXPECT_FALSE(a.IsElementEqual(same));  // the same pointers in another order
    dest.Reverse();  // an even length
    dest.Add(pool[0]);
    dest.Reverse();  // an odd one
    EXPECT_EQ(ItemsOf(dest), (Items{pool[0], kept, pool[1], pool[2], pool[3]}));
    EXPECT_TRUE(Tracked::destroyed.empty());
}

TEST_F(ExPtrArray, SerializeWritesTheCountAndRawPointerValues) {
    Array a = Fill(2);
    a.Add(nullptr);
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        a.Serialize(ar);
        ar.Close();
    }
    ASSERT_EQ(2u + 3 * sizeof(void*), file.GetLength());
    file.SeekToBegin();
    unsigned char bytes[2 + 3 * sizeof(void*)];
    ASSERT_EQ(sizeof bytes, file.Read(bytes, sizeof bytes));
    EXPECT_EQ(3, bytes[0]);
    EXPECT_EQ(0, bytes[1]);
    void* values[3];
    std::memcpy(values, bytes + 2, sizeof values);
    EXPECT_EQ((std::vector<void*>{pool[0], pool[1], nullptr}), std::vector<void*>(values, values + 3));

    file.SeekToBegin();
    Array back;
    {
        CArchive ar(&file, CArchive::load);
        back.Serialize(ar);
    }
    EXPECT_TRUE(back.IsElementEqual(a));
    EXPECT_STREQ("CExPtrArray", back.GetRuntimeClassName());
}

}  // namespace
