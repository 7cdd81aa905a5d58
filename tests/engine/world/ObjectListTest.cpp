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

// The entries as "0 2 1", then the capacity after a slash.
std::string show(const ObjectList &list) {
  std::string s;
  for (qv::ObjectListIterator it(&list); !it.isDone(); it.next())
    s += std::to_string(reinterpret_cast<char *>(it.currentObject()) -
                        reinterpret_cast<char *>(fake(0))) +
         " ";
  return s + "/" + std::to_string(list.getCapacity());
}

TEST(ObjectList, InsertRemoveAndCopies) {
  ObjectList list;
  EXPECT_EQ(show(list), "/1");
  EXPECT_EQ(list.insert(nullptr), -1);
  list = listOf({0, 1, 2, 1});  // duplicates are kept
  EXPECT_EQ(show(list), "0 1 2 1 /4");
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
  EXPECT_EQ(show(list), "5 6 7 10 11 12 14 /8");
  EXPECT_EQ(show(listOf({0, 1}) + listOf({2, 3})), "0 1 2 3 /4");
  ObjectList copy(list);
  copy.remove(fake(5));
  ObjectList &self = copy;
  copy = self;
  EXPECT_EQ(show(list) + show(copy), "5 6 7 10 11 12 14 /86 7 10 11 12 14 /8");
}

TEST(ObjectList, BadIndexIsLoggedAndThrownAndIteratorsSeeTheLiveList) {
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
  EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                "ObjectList::operator[](): Error! Index -1 out of range [0, 1]",
                                "ObjectList::operator[](): Error! Index 2 out of range [0, 1]",
                                "ObjectList::operator[](): Error! Index 0 out of range [0, -1]"}));

  qv::ObjectListIterator it(&list);
  it.next();
  it.next();
  it.next();
  EXPECT_TRUE(it.isDone());
  EXPECT_EQ(it.currentObject(), nullptr);
  list.insert(fake(2));  // an entry appended after the end is seen
  EXPECT_EQ(it.currentObject(), fake(2));
  it.first();
  EXPECT_EQ(it.currentObject(), fake(0));
}

}  // namespace
