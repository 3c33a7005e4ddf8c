// SPDX-License-Identifier: MIT
#include <set>
#include <stdexcept>
#include <unordered_set>
#include <variant>

#include "runtime/AnyHashable.hpp"
#include "runtime/Describe.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/IdentifiedAction.hpp"
#include "runtime/SharedText.hpp"
#include "runtime/UUID.hpp"
#include "runtime/UniqueFunction.hpp"

namespace vek {
namespace {

struct Inner {
  struct saved {
    std::string secret;
  };
  std::variant<saved> value;
};
struct Outer {
  struct inner {
    Inner action;
  };
  struct rows {
    IdentifiedAction<int, Inner> action;
  };
  struct closed {};
  std::variant<inner, rows, closed> value;
};

TEST(Describe, NamesTheCasesAndLeavesPayloadsOut) {
  Inner const saved{Inner::saved{"token"}};
  EXPECT_EQ(describe(Outer{Outer::closed{}}), "closed");
  EXPECT_EQ(describe(Outer{Outer::inner{saved}}), "inner(saved)");
  EXPECT_EQ(describe(Outer{Outer::rows{{{7, saved}}}}), "rows(element(saved))");
  EXPECT_EQ(describe(5), "");
}

TEST(UUID, ReadsTheCanonicalTextInEitherCaseOnly) {
  auto const lower = "0f8fad5b-d9cb-469f-a165-70867728950e";
  auto const upper = "0F8FAD5B-D9CB-469F-A165-70867728950E";
  auto const id = UUID::parse(lower);
  ASSERT_TRUE(id);
  EXPECT_EQ(UUID::parse(upper), id);
  EXPECT_EQ(id->lowerCaseText(), lower);
  EXPECT_EQ(id->upperCaseText(), upper);
  for (auto const* text :
       {"", "0f8fad5b-d9cb-469f-a165-70867728950", "0f8fad5b-d9cb-469f-a165-70867728950e0",
        "0f8fad5bd-9cb-469f-a165-70867728950e", "0f8fad5b-d9cb-469f-a165-70867728950g",
        "{f8fad5b-d9cb-469f-a165-70867728950}"}) {
    EXPECT_FALSE(UUID::parse(text)) << text;
  }
}

TEST(UUID, RandomOnesAreOfVersionFourAndDiffer) {
  std::unordered_set<UUID> seen;
  for (int i = 0; i < 1'000; ++i) {
    auto const id = UUID::random();
    EXPECT_EQ(id.lowerCaseText()[14], '4');
    EXPECT_THAT(std::string("89ab"), testing::Contains(id.lowerCaseText()[19]));
    EXPECT_EQ(UUID::parse(id.upperCaseText()), id);
    seen.insert(id);
  }
  EXPECT_EQ(seen.size(), 1'000U);
}

TEST(SharedText, CopiesShareAndCompareByContent) {
  SharedText const text(std::string("spoken"));
  auto const copy = text;
  EXPECT_EQ(&text.string(), &copy.string());
  EXPECT_EQ(text, SharedText("spoken"));
  EXPECT_NE(text, SharedText());
  EXPECT_EQ(SharedText(""), SharedText());
  EXPECT_TRUE(SharedText("").empty());
}

TEST(ErrorObject, IsEqualToItsCopiesOnlyAndKeepsTheError) {
  auto const error = std::make_exception_ptr(std::runtime_error("no connection"));
  ErrorObject const object(error);
  auto const copy = object;
  EXPECT_EQ(object, copy);
  EXPECT_NE(object, ErrorObject(error));
  EXPECT_EQ(object.localizedDescription(), "no connection");
  EXPECT_THROW(std::rethrow_exception(object.error()), std::runtime_error);
  EXPECT_FALSE(ErrorObject(std::make_exception_ptr(5)).localizedDescription().empty());
}

TEST(AnyHashable, TellsTypesAndValuesApart) {
  enum class One { same };
  enum class Two { same };
  EXPECT_EQ(AnyHashable(One::same), AnyHashable(One::same));
  EXPECT_FALSE(AnyHashable(One::same) == AnyHashable(Two::same));
  EXPECT_FALSE(AnyHashable(std::string("a")) == AnyHashable(std::string("b")));
}

TEST(UniqueFunction, HoldsCallablesThatCanOnlyBeMoved) {
  UniqueFunction<int(int)> add = [base = std::make_unique<int>(2)](int more) {
    return *base + more;
  };
  auto const moved = std::move(add);
  EXPECT_EQ(moved(3), 5);
  EXPECT_TRUE(moved);
  EXPECT_FALSE(UniqueFunction<void()>(nullptr));
}

}  // namespace
}  // namespace vek
