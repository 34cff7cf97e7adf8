// CExPtrArray: lenient access, searches, non-owning removal, owning deletion,
// moves, set operations and the raising paths.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

#include "CExPtrArray.h"
#include "CMemFile.h"

namespace {

// Records which elements are destroyed, in order, and which are still alive.
struct Tracked {
    static std::vector<int>& Destroyed() {
        static std::vector<int> ids;
        return ids;
    }
    static std::set<const Tracked*>& Alive() {
        static std::set<const Tracked*> alive;
        return alive;
    }
    explicit Tracked(int id_) : id(id_) { Alive().insert(this); }
    virtual ~Tracked() {
        Alive().erase(this);
        Destroyed().push_back(id);
    }
    int id;
};
struct TrackedChild : Tracked {
    TrackedChild(int id_, bool* flag_) : Tracked(id_), flag(flag_) {}
    ~TrackedChild() override { *flag = true; }
    bool* flag;
};

using Array = CExPtrArray<Tracked*, Tracked*>;

class ExPtrArray : public ::testing::Test {
protected:
    void SetUp() override { Tracked::Destroyed().clear(); }
    // Elements that the arrays did not destroy are the test's to free.
    void TearDown() override {
        for (Tracked* t : pool) {
            if (Tracked::Alive().count(t)) delete t;
        }
    }
    Tracked* Make(int id) {
        Tracked* t = new Tracked(id);
        pool.push_back(t);
        return t;
    }
    // An array of fresh elements with ids 0..n-1.
    Array Fill(int n) {
        Array a;
        for (int i = 0; i < n; ++i) a.Add(Make(i));
        return a;
    }
    static std::vector<Tracked*> Items(const Array& a) {
        std::vector<Tracked*> v;
        for (INT_PTR i = 0; i < a.GetSize(); ++i) v.push_back(a.GetAt(i));
        return v;
    }
    std::vector<Tracked*> pool;
};

TEST_F(ExPtrArray, LenientAccessorsNeverRaise) {
    Array a = Fill(3);
    EXPECT_EQ(nullptr, a.GetAt(-1));
    EXPECT_EQ(nullptr, a.GetAt(3));
    EXPECT_EQ(pool[2], a.GetLastElement());
    EXPECT_FALSE(a.IsValidIndex(3));

    Tracked* other = Make(9);
    a.SetAt(3, other);  // past the end: ignored
    a.SetAt(-1, other);
    EXPECT_EQ(Items(a), (std::vector<Tracked*>{pool[0], pool[1], pool[2]}));
    a.SetAt(0, other);  // replaced, not destroyed
    EXPECT_EQ(other, a.GetAt(0));
    EXPECT_TRUE(Tracked::Destroyed().empty());
    EXPECT_EQ(nullptr, Array().GetLastElement());
}

TEST_F(ExPtrArray, SearchFindsTheFirstOccurrenceByAddress) {
    Array a = Fill(3);
    a.Add(pool[1]);
    EXPECT_EQ(1, a.FindIndex(pool[1]));
    EXPECT_EQ(-1, a.FindIndex(Make(7)));
    EXPECT_EQ(-1, a.FindIndex(nullptr));
    a.Add(nullptr);
    EXPECT_EQ(4, a.FindIndex(nullptr));

    EXPECT_EQ(-1, a.Add_if_only_do_not_exists(pool[2]));
    EXPECT_EQ(5, a.GetSize());
    Tracked* fresh = Make(8);
    EXPECT_EQ(5, a.Add_if_only_do_not_exists(fresh));
    EXPECT_EQ(fresh, a.GetAt(5));
}

TEST_F(ExPtrArray, RemovalNeverDestroys) {
    Array a = Fill(4);
    a.Add(pool[1]);
    EXPECT_TRUE(a.Remove(pool[1]));  // the first occurrence only
    EXPECT_EQ(Items(a), (std::vector<Tracked*>{pool[0], pool[2], pool[3], pool[1]}));
    EXPECT_FALSE(a.Remove(Make(5)));
    Array empty;
    EXPECT_FALSE(empty.Remove(nullptr));

    EXPECT_EQ(pool[1], a.RemoveLastElement());
    EXPECT_EQ(nullptr, empty.RemoveLastElement());

    a.InsertAt(0, nullptr);
    a.InsertAt(2, nullptr);
    a.Add(nullptr);
    a.RemoveNullElement();
    EXPECT_EQ(Items(a), (std::vector<Tracked*>{pool[0], pool[2], pool[3]}));
    a.RemoveAll();
    { Array gone = Fill(2); }  // nor does the destructor
    EXPECT_TRUE(Tracked::Destroyed().empty());
}

TEST_F(ExPtrArray, RemoveDuplicatedElementsKeepsFirstOccurrencesInOrder) {
    Array a = Fill(3);
    Tracked *x = pool[0], *y = pool[1], *z = pool[2];
    Array b;
    for (Tracked* t : std::vector<Tracked*>{y, x, y, y, z, x, nullptr, z, nullptr}) b.Add(t);
    b.RemoveDuplicatedElements();
    EXPECT_EQ(Items(b), (std::vector<Tracked*>{y, x, z, nullptr}));
    EXPECT_TRUE(Tracked::Destroyed().empty());
}

TEST_F(ExPtrArray, DeleteDestroysThroughTheVirtualDestructor) {
    bool childGone = false;
    Array a;
    Tracked* child = new TrackedChild(42, &childGone);
    a.Add(child);
    a.Add(nullptr);
    Tracked* absent = Make(3);

    EXPECT_FALSE(a.Delete(absent));
    EXPECT_TRUE(Tracked::Destroyed().empty());
    EXPECT_TRUE(a.Delete(child));
    EXPECT_TRUE(childGone);
    EXPECT_EQ(std::vector<int>{42}, Tracked::Destroyed());
    EXPECT_TRUE(a.Delete(nullptr));  // a null found is only removed
    EXPECT_EQ(0, a.GetSize());
    EXPECT_EQ(1u, Tracked::Destroyed().size());
}

TEST_F(ExPtrArray, DeleteAtSlidesFollowingElementsIntoTheIndex) {
    Array a = Fill(5);
    a.SetAt(2, nullptr);
    a.DeleteAt(1, 2);  // element 1, then the null that slid into index 1
    EXPECT_EQ(std::vector<int>{1}, Tracked::Destroyed());
    EXPECT_EQ(Items(a), (std::vector<Tracked*>{pool[0], pool[3], pool[4]}));
    a.DeleteAt(0, 0);
    a.DeleteAt(0, -3);
    EXPECT_EQ(3, a.GetSize());

    EXPECT_TRUE(a.DeleteLastElement());
    EXPECT_EQ((std::vector<int>{1, 4}), Tracked::Destroyed());
    Array empty;
    EXPECT_FALSE(empty.DeleteLastElement());
    empty.Add(nullptr);
    EXPECT_TRUE(empty.DeleteLastElement());
    EXPECT_EQ(0, empty.GetSize());

    a.InsertAt(1, nullptr);  // pool[0], null, pool[3]
    a.DeleteAll();
    EXPECT_EQ((std::vector<int>{1, 4, 0, 3}), Tracked::Destroyed());
    EXPECT_EQ(0, a.GetSize());
}

TEST_F(ExPtrArray, BadIndexesRaise) {
    Array a = Fill(2);
    EXPECT_THROW(a.DeleteAt(2, 1), CInvalidArgException);
    EXPECT_TRUE(Tracked::Destroyed().empty());  // the lenient read found nothing to destroy
    EXPECT_THROW(a.DeleteAt(-1, 1), CInvalidArgException);
    EXPECT_THROW(a.DeleteAt(1, 2), CInvalidArgException);  // the second round is past the end
    EXPECT_EQ(std::vector<int>{1}, Tracked::Destroyed());
    EXPECT_EQ(1, a.GetSize());

    Array b = Fill(3);
    Array dest;
    EXPECT_THROW(b.MoveElementTo(dest, 1, 3), CInvalidArgException);
    EXPECT_EQ(3, b.GetSize());  // the raise came before anything here was removed
    Array c = Fill(2);
    EXPECT_THROW(c.MoveElementTo(dest, -1, 0), CInvalidArgException);
    EXPECT_EQ(1, c.GetSize());  // element 0 had moved before index -1 was reached
    EXPECT_EQ(std::vector<int>{1}, Tracked::Destroyed());
}

TEST_F(ExPtrArray, MoveElementToAppendsTheBlockInOrder) {
    Array a = Fill(5);
    Array dest;
    Tracked* kept = Make(9);
    dest.Add(kept);
    EXPECT_TRUE(a.MoveElementTo(dest, 1, 3));
    EXPECT_EQ(Items(a), (std::vector<Tracked*>{pool[0], pool[4]}));
    EXPECT_EQ(Items(dest), (std::vector<Tracked*>{kept, pool[1], pool[2], pool[3]}));
    EXPECT_TRUE(a.MoveElementTo(dest, 1, 1));
    EXPECT_EQ(pool[4], dest.GetLastElement());

    EXPECT_FALSE(a.MoveElementTo(dest, 2, 1));
    EXPECT_EQ(1, a.GetSize());
    EXPECT_EQ(5, dest.GetSize());
    EXPECT_TRUE(Tracked::Destroyed().empty());
}

TEST_F(ExPtrArray, SubtractRemovesOneOccurrencePerEntry) {
    Array a = Fill(3);
    Tracked *x = pool[0], *y = pool[1], *z = pool[2];
    a.Add(x);
    a.Add(y);
    a.Add(x);  // x y z x y x
    Array other;
    other.Add(x);
    other.Add(x);
    other.Add(Make(7));
    a.Subtract(other);
    EXPECT_EQ(Items(a), (std::vector<Tracked*>{y, z, y, x}));
    EXPECT_TRUE(Tracked::Destroyed().empty());
}

TEST_F(ExPtrArray, IsElementEqualComparesPointersByPositionAndReverseSwaps) {
    Array a = Fill(2);
    Array b;
    b.Add(pool[0]);
    EXPECT_FALSE(a.IsElementEqual(b));
    b.Add(pool[1]);
    EXPECT_TRUE(a.IsElementEqual(b));
    b.Reverse();
    EXPECT_FALSE(a.IsElementEqual(b));

    // Reverse at odd and even lengths.
    Array three;
    for (int i = 0; i < 3; ++i) three.Add(Make(10 + i));
    three.Reverse();
    EXPECT_EQ(Items(three), (std::vector<Tracked*>{pool[4], pool[3], pool[2]}));

    Array four;
    for (int i = 0; i < 4; ++i) four.Add(pool[i]);
    four.Reverse();
    EXPECT_EQ(Items(four), (std::vector<Tracked*>{pool[3], pool[2], pool[1], pool[0]}));
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
    EXPECT_EQ(pool[0], values[0]);
    EXPECT_EQ(pool[1], values[1]);
    EXPECT_EQ(nullptr, values[2]);

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
