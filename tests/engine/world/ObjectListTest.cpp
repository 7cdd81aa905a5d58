#include <gtest/gtest.h>

#include <stdexcept>

#include "LogCapture.h"
#include "world/ObjectList.h"
#include "world/ObjectListIterator.h"

using qv::Object;
using qv::ObjectList;

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

TEST(ObjectList, InsertRemoveAndCopies) {
  ObjectList list;
  EXPECT_EQ(list.getCapacity(), 1);
  for (int i = 0; i < 3; i++) list.insert(fake(i));
  EXPECT_EQ(list.getCapacity(), 4);
  EXPECT_EQ(list.insert(nullptr), -1);
  EXPECT_EQ(list.insert(fake(1)), 0);  // duplicates are kept
  expectEntries(list, {0, 1, 2, 1});
  EXPECT_EQ(list.remove(fake(1)), 0);  // only the first of two equal entries goes
  expectEntries(list, {0, 2, 1});
  EXPECT_EQ(list.remove(fake(7)), -1);
  list.clear();
  EXPECT_TRUE(list.isEmpty());
  EXPECT_EQ(list.getCapacity(), 4);

  // Emptying from the front, then refilling, keeps order and capacity.
  list = listOf({0, 1, 2, 3, 4, 5, 6, 7});
  for (int i = 0; i < 5; i++) list.remove(fake(i));
  for (int i = 10; i < 15; i++) list.insert(fake(i));
  EXPECT_EQ(list.remove(fake(13)), 0);
  expectEntries(list, {5, 6, 7, 10, 11, 12, 14});
  EXPECT_EQ(list.getCapacity(), 8);

  expectEntries(listOf({0, 1}) + listOf({2, 3}), {0, 1, 2, 3});
  ObjectList copy(list);
  EXPECT_EQ(copy.getCapacity(), 8);
  copy.remove(fake(5));
  EXPECT_EQ(list.getCount(), 7);
  ObjectList &self = copy;
  copy = self;
  EXPECT_EQ(copy.getCount(), 6);
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

TEST(ObjectListIterator, WalksTheLiveListAndStaysFinished) {
  ObjectList empty;
  qv::ObjectListIterator it(&empty);
  EXPECT_TRUE(it.isDone());
  EXPECT_EQ(it.currentObject(), nullptr);
  ObjectList list = listOf({0, 1});
  it.setList(&list);
  std::vector<Object *> seen;
  for (it.first(); !it.isDone(); it.next()) seen.push_back(it.currentObject());
  EXPECT_EQ(seen, (std::vector<Object *>{fake(0), fake(1)}));
  it.next();
  EXPECT_TRUE(it.isDone());
  list.insert(fake(2));  // an entry appended after the end is seen
  EXPECT_EQ(it.currentObject(), fake(2));
}
