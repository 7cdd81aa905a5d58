#include <gtest/gtest.h>

#include <stdexcept>

#include "LogCapture.h"
#include "ObjectList.h"
#include "ObjectListIterator.h"

using qv::Object;
using qv::ObjectList;
using qv::ObjectListIterator;

namespace {

// Lists never touch the objects, so stand-in addresses will do.
Object *fake(int i) {
  static char slots[64];
  return reinterpret_cast<Object *>(&slots[i]);
}

ObjectList listOf(std::initializer_list<int> ids) {
  ObjectList list;
  for (int i : ids) list.insert(fake(i));
  return list;
}

void expectEntries(const ObjectList &list, std::initializer_list<int> ids) {
  ASSERT_EQ(list.getCount(), static_cast<int>(ids.size()));
  int k = 0;
  for (int i : ids) EXPECT_EQ(list[k++], fake(i)) << "entry " << k - 1;
}

}  // namespace

TEST(ObjectList, GrowsByDoublingAndRefusesNull) {
  ObjectList list;
  EXPECT_EQ(list.getCount(), 0);
  EXPECT_EQ(list.getCapacity(), 1);
  EXPECT_TRUE(list.isEmpty());
  for (int i = 0; i < 3; i++) EXPECT_EQ(list.insert(fake(i)), 0);
  EXPECT_EQ(list.getCapacity(), 4);
  EXPECT_EQ(list.insert(nullptr), -1);
  EXPECT_EQ(list.getCount(), 3);
  // Duplicates are kept: insertion does not search.
  EXPECT_EQ(list.insert(fake(1)), 0);
  expectEntries(list, {0, 1, 2, 1});
  list.clear();
  EXPECT_TRUE(list.isEmpty());
  EXPECT_EQ(list.getCapacity(), 4);
}

TEST(ObjectList, RemoveKeepsOrderFromEitherEnd) {
  ObjectList list = listOf({0, 1, 2});
  EXPECT_EQ(list.remove(fake(1)), 0);
  expectEntries(list, {0, 2});
  EXPECT_EQ(list.remove(fake(7)), -1);
  EXPECT_EQ(ObjectList().remove(fake(0)), -1);

  // Only the first of two equal entries goes.
  list = listOf({3, 4, 3, 5});
  EXPECT_EQ(list.remove(fake(3)), 0);
  expectEntries(list, {4, 3, 5});

  // Emptying from the front, then refilling, keeps order and capacity.
  list = listOf({0, 1, 2, 3, 4, 5, 6, 7});
  for (int i = 0; i < 5; i++) EXPECT_EQ(list.remove(fake(i)), 0);
  for (int i = 10; i < 15; i++) EXPECT_EQ(list.insert(fake(i)), 0);
  expectEntries(list, {5, 6, 7, 10, 11, 12, 13, 14});
  EXPECT_EQ(list.getCapacity(), 8);
  EXPECT_EQ(list.remove(fake(13)), 0);
  EXPECT_EQ(list.remove(fake(6)), 0);
  expectEntries(list, {5, 7, 10, 11, 12, 14});
}

TEST(ObjectList, BadIndexIsLoggedAndThrown) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  ObjectList list = listOf({0, 1});
  for (int bad : {-1, 2}) {
    try {
      (void)list[bad];
      FAIL() << "index " << bad << " did not throw";
    } catch (const std::out_of_range &e) {
      EXPECT_STREQ(e.what(), "ObjectList::operator[](): Invalid index!");
    }
  }
  EXPECT_THROW((void)ObjectList()[0], std::out_of_range);
  EXPECT_TRUE(log.contains("ObjectList::operator[](): Error! Index -1 out of range [0, 1]"));
  EXPECT_TRUE(log.contains("ObjectList::operator[](): Error! Index 2 out of range [0, 1]"));
  EXPECT_TRUE(log.contains("ObjectList::operator[](): Error! Index 0 out of range [0, -1]"));
}

TEST(ObjectList, CopiesAndConcatenation) {
  ObjectList a = listOf({0, 1});
  ObjectList b = listOf({2, 3, 4});
  ObjectList sum = a + b;
  expectEntries(sum, {0, 1, 2, 3, 4});
  expectEntries(a, {0, 1});

  // A copy takes the source's capacity and is independent of it.
  ObjectList c(b);
  EXPECT_EQ(c.getCapacity(), b.getCapacity());
  c.remove(fake(3));
  expectEntries(b, {2, 3, 4});
  ObjectList &self = c;
  c = self;
  expectEntries(c, {2, 4});
  c = a;
  expectEntries(c, {0, 1});
}

TEST(ObjectListIterator, WalksTheLiveListAndStaysFinished) {
  ObjectList empty;
  ObjectListIterator it(&empty);
  EXPECT_TRUE(it.isDone());
  EXPECT_EQ(it.currentObject(), nullptr);
  it.next();
  EXPECT_TRUE(it.isDone());

  ObjectList list = listOf({0, 1});
  it.setList(&list);
  std::vector<Object *> seen;
  for (it.first(); !it.isDone(); it.next()) seen.push_back(it.currentObject());
  EXPECT_EQ(seen, (std::vector<Object *>{fake(0), fake(1)}));
  it.next();
  it.next();
  EXPECT_TRUE(it.isDone());
  // The iterator sees an entry appended after it finished.
  list.insert(fake(2));
  EXPECT_FALSE(it.isDone());
  EXPECT_EQ(it.currentObject(), fake(2));
  it.first();
  EXPECT_EQ(it.currentObject(), fake(0));
}
