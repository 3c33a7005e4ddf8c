// SPDX-License-Identifier: MIT
#include "features/SessionFeature.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "support/TestStore.hpp"

namespace vek {
namespace {

using test::TestStore;
using Feature = SessionFeature;
using State = Feature::State;
using Action = Feature::Action;
using Internal = Feature::InternalAction;
using Fact = Feature::DelegateAction;
using testing::ElementsAre;

/// A store of credentials and a login that do what the test says.
class SessionFeatureTests : public testing::Test {
 protected:
  Credentials const credentials{{.accessToken = "token", .tokenType = "Bearer", .expiresIn = {}}};
  /// What the store of credentials was asked for.
  std::vector<std::string> calls;
  bool isStored = true;
  bool canStore = true;
  bool canLogIn = true;

  Task<Credentials> stored() {
    if (!isStored) throw std::runtime_error("none");
    co_return credentials;
  }
  Task<bool> store(Credentials given) {
    EXPECT_EQ(given, credentials);
    calls.emplace_back("store");
    co_return canStore;
  }
  Task<bool> forget() {
    calls.emplace_back("forget");
    co_return false;
  }
  Task<Credentials> logIn() {
    if (!canLogIn) throw std::runtime_error("The page was closed.");
    co_return credentials;
  }

  auto dependencies() {
    return [this](DependencyValues& values) {
      values.set(credentialsClient,
                 CredentialsClient{.storeCredentials = [this](auto c) { return store(c); },
                                   .credentials = [this] { return stored(); },
                                   .logOut = [this] { return forget(); }});
      values.set(authClient, AuthClient{.logIn = [this] { return logIn(); }});
    };
  }

  void receiveLogin(TestStore<Feature>& store) {
    store.receive(Action::internal{Internal::didLogin{credentials}}, [&](State& state) {
      state.isLoading = false;
      state.credentials = credentials;
    });
    store.receive(Action::delegate{Fact::isLoggedIn{}});
    EXPECT_THAT(calls, ElementsAre("store"));
  }
};

TEST_F(SessionFeatureTests, AStoredSessionTakesThePathOfAFreshOne) {
  TestStore<Feature> store({}, dependencies());
  store.send(Action::setUp{});
  receiveLogin(store);
}

TEST_F(SessionFeatureTests, WithoutAStoredSessionNothingHappens) {
  isStored = false;
  TestStore<Feature> store({}, dependencies());
  store.send(Action::setUp{});
}

TEST_F(SessionFeatureTests, AFailedLoginIsShownUntilTheNextClick) {
  canLogIn = false;
  TestStore<Feature> store({}, dependencies());
  auto const click = [&] {
    store.send(Action::loginButtonClicked{}, [](State& state) {
      state.isLoading = true;
      state.error.reset();
    });
  };
  auto const fails = [&] {
    store.receive<Action::internal>([](State& state, Action::internal const& received) {
      state.isLoading = false;
      state.error = std::get<Internal::loginFailed>(received.action.value).error;
      EXPECT_EQ(state.error->localizedDescription(), "The page was closed.");
    });
  };
  click();
  fails();
  store.send(Action::dismissErrorButtonClicked{}, [](State& state) { state.error.reset(); });
  click();
  fails();
  canLogIn = true;
  canStore = false;
  click();
  receiveLogin(store);
}

TEST_F(SessionFeatureTests, ALogoutIsToldOnceTheStoreWasAsked) {
  TestStore<Feature> store({.credentials = credentials}, dependencies());
  store.send(Action::logout{}, [](State& state) { state.credentials.reset(); });
  EXPECT_TRUE(calls.empty());
  store.receive(Action::delegate{Fact::didLogOut{}});
  EXPECT_THAT(calls, ElementsAre("forget"));
}

}  // namespace
}  // namespace vek
