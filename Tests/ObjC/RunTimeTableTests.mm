// The classes as the Objective-C runtime knows them, beside the table of what it must know. A
// selector that is missing or misspelt fails here.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <string>

namespace hlv::testing {
namespace {

/// Without offsets and the insides of structures, and with this system's BOOL as B.
std::string shortened(const char* encoding) {
  std::string text = encoding ? encoding : "";
  std::erase_if(text, [](unsigned char mark) { return std::isdigit(mark); });
  if (const auto insides = text.find('='); insides != std::string::npos) {
    text.erase(insides, text.rfind('}') - insides);
  }
  std::replace(text.begin(), text.end(), *@encode(BOOL), 'B');
  return text;
}

/// The type encoding of a class's or protocol's own method; empty when it has none of that name.
std::string encodingIn(Class owner, SEL selector, bool isClassMethod) {
  Class const receiver = isClassMethod ? object_getClass(owner) : owner;
  const Method method = class_getInstanceMethod(receiver, selector);
  const bool isOwn = method != class_getInstanceMethod(class_getSuperclass(receiver), selector);
  return isOwn ? shortened(method_getTypeEncoding(method)) : "";
}

std::string encodingIn(Protocol* owner, SEL selector, bool isClassMethod) {
  return shortened(protocol_getMethodDescription(owner, selector, YES, !isClassMethod).types);
}

TEST(RunTimeTableTest, TheRuntimeKnowsEveryClassProtocolAndSelector) {
  NSAutoreleasePool* const pool = [NSAutoreleasePool new];
  std::ifstream table(HLV_RUN_TIME_TABLE);
  Class owner = Nil;
  Protocol* protocol = nil;
  int rows = 0;
  for (std::string line; std::getline(table, line);) {
    std::istringstream words(line);
    std::string kind, name, type;
    words >> kind >> name >> type;
    if (kind.empty() || kind == "#") continue;
    ++rows;
    if (kind == "protocol") {
      protocol = objc_getProtocol(name.c_str());
      EXPECT_TRUE(protocol) << line;
    } else if (kind == "class") {
      protocol = nil;
      owner = NSClassFromString([NSString stringWithUTF8String:name.c_str()]);
      ASSERT_TRUE(owner) << line;
      EXPECT_EQ(NSStringFromClass([owner superclass]).UTF8String, type) << line;
    } else if (kind == "adopts") {
      EXPECT_TRUE([owner conformsToProtocol:objc_getProtocol(name.c_str())]) << line;
    } else if (kind == "property") {
      // Its accessors: T is followed by the type, R marks a getter alone, G and S name them.
      const std::string value = type.substr(1, 1);
      std::string getter = name, setter = "set" + name + ":";
      setter[3] = static_cast<char>(std::toupper(setter[3]));
      std::istringstream marks(type);
      for (std::string mark; std::getline(marks, mark, ',');) {
        if (mark[0] == 'G') getter = mark.substr(1);
        if (mark[0] == 'S') setter = mark.substr(1);
        if (mark == "R") setter.clear();
      }
      EXPECT_EQ(encodingIn(owner, sel_registerName(getter.c_str()), false), value + "@:") << line;
      if (setter.empty()) continue;
      EXPECT_EQ(encodingIn(owner, sel_registerName(setter.c_str()), false), "v@:" + value) << line;
    } else if (kind == "variable") {
      EXPECT_TRUE(class_getInstanceVariable(owner, name.c_str())) << line;
    } else {
      const bool isClassMethod = kind == "+";
      const SEL selector = sel_registerName(name.c_str());
      EXPECT_EQ(protocol ? encodingIn(protocol, selector, isClassMethod)
                         : encodingIn(owner, selector, isClassMethod),
                type)
          << line;
    }
  }
  EXPECT_GT(rows, 90);
  [pool drain];
}

}  // namespace
}  // namespace hlv::testing
