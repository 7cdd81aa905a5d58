#include <gtest/gtest.h>

#include <stdexcept>

#include "LogCapture.h"
#include "world/ObjectList.h"
#include "world/ObjectListIterator.h"

namespace {

using qv::Object;
using qv::ObjectList;

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

// The entries as "0 2 1 ", walked by an iterator, then the capacity after a slash.
std::string show(const ObjectList &list) {
  std::string s;
  for (qv::ObjectListIterator it(&list); !it.isDone(); it.next())
    s += std::to_string(reinterpret_cast<char *>(it.currentObject()) -
                        reinterpret_cast<char *>(fake(0))) +
         " ";
  return s + "/" + std::to_string(list.getCapacity());
}

TEST(ObjectList, InsertRemoveCopyAndBadIndex) {
  ObjectList list;
  EXPECT_EQ(show(list), "/1");
  EXPECT_EQ(list.insert(nullptr), -1);
  list = listOf({0, 1, 2, 1});         // duplicates are kept
  EXPECT_EQ(list.remove(fake(1)), 0);  // only the first of two equal entries goes
  EXPECT_EQ(list.remove(fake(7)), -1);
  EXPECT_EQ(show(list), "0 2 1 /4");
  list.clear();
  EXPECT_EQ(show(list), "/4");

  // Emptying from the front, then refilling, keeps order and capacity.
  list = listOf({0, 1, 2, 3, 4, 5, 6, 7});
  for (int i = 0; i < 5; i++) list.remove(fake(i));
  for (int i = 10; i < 15; i++) list.insert(fake(i));
  EXPECT_EQ(list.remove(fake(13)), 0);
  ObjectList copy(list);
  copy.remove(fake(5));
  ObjectList &self = copy;
  copy = self;
  EXPECT_EQ(show(list) + show(copy) + show(listOf({0, 1}) + listOf({2, 3})),
            "5 6 7 10 11 12 14 /86 7 10 11 12 14 /80 1 2 3 /4");

  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  EXPECT_THROW((void)list[-1], std::out_of_range);
  EXPECT_THROW((void)list[7], std::out_of_range);
  try {
    (void)ObjectList()[0];
  } catch (const std::out_of_range &e) {
    EXPECT_STREQ(e.what(), "ObjectList::operator[](): Invalid index!");
  }
  EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                "ObjectList::operator[](): Error! Index -1 out of range [0, 6]",
                                "ObjectList::operator[](): Error! Index 7 out of range [0, 6]",
                                "ObjectList::operator[](): Error! Index 0 out of range [0, -1]"}));
}

TEST(ObjectListIterator, WalksTheLiveListAndStaysFinished) {
  ObjectList list = listOf({0, 1});
  qv::ObjectListIterator it(&list);
  for (int i = 0; i < 3; i++) it.next();
  EXPECT_TRUE(it.isDone());
  EXPECT_EQ(it.currentObject(), nullptr);
  list.insert(fake(2));  // an entry appended after the end is seen
  EXPECT_EQ(it.currentObject(), fake(2));
  it.first();
  EXPECT_EQ(it.currentObject(), fake(0));
}

}  // namespace
