#include "Services/Console/ConsoleResources.h"

#include <utility>

#include "Sandbox/TestCards.h"
#include "Services/Console/ConsoleRecords.h"
#include "Services/Console/LiveStory.h"
#include "Services/Console/Page.h"
#include "Services/Http/ErrorBody.h"
#include "Services/ProviderRecords.h"
#include "Services/TesterResources.h"
#include "Services/Wiped.h"

namespace hlv::services {
namespace {

/// Each holds a thread of the door.
constexpr int mostListeners = 8;

/// One page that listens, while it lives.
class Listener {
 public:
  Listener(std::shared_ptr<std::atomic<int>> count, std::shared_ptr<sandbox::Sandbox> sandbox)
      : count_(std::move(count)), story_(std::move(sandbox)) {
    if (++*count_ <= mostListeners) return;
    --*count_;
    throw Refused{503, "too-many-pages", "Too many pages listen to the story."};
  }
  ~Listener() { --*count_; }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::string next() { return story_.next(); }

 private:
  const std::shared_ptr<std::atomic<int>> count_;
  LiveStory story_;
};

bool isThisMachine(const std::string& host) {
  const auto name = host.substr(0, host.rfind(':'));
  return name == "127.0.0.1" || name == "localhost";
}

App::Done replying(const Reply& reply) {
  return [reply](const App::Outcome& outcome) { reply(answerOf(outcome)); };
}

/// A test card by its name, or a card as somebody typed it.
std::shared_ptr<sandbox::EnteredCard> takeCard(Json& body) {
  sandbox::CardFields fields;
  const Wiped number(fields.pan);
  const Wiped code(fields.cvv);
  if (const auto name = textIn(body, "test_card")) {
    const auto* card = sandbox::findTestCard(*name);
    if (!card) throw Refused{422, "no-such-test-card", "There is no test card of that name."};
    fields = card->fields;
  } else {
    fields = takeNewCard(body);
  }
  requireKnownMembers(body, {"test_card", "credit_card", "use_case", "billing_address"});
  fields.useCase = textIn(body, "use_case").value_or(fields.useCase);
  return sandbox::EnteredCard::make(std::move(fields));
}

std::shared_ptr<sandbox::EnteredAddress> addressOf(const Json& json) {
  return sandbox::EnteredAddress::make(addressIn(json));
}

/// How many operations are asked for; one, unless the request says otherwise.
std::size_t countIn(const HttpRequest& request) {
  const auto count = numberOf(request.queryValue("last").value_or("1"));
  if (!count || *count < 0) {
    throw Refused{422, "wrong-type", "How many operations are asked for is no number."};
  }
  return static_cast<std::size_t>(*count);
}

}  // namespace

ConsoleResources::ConsoleResources(std::shared_ptr<sandbox::Sandbox> sandbox,
                                   std::shared_ptr<App> app, bool anyName)
    : sandbox_(std::move(sandbox)), app_(std::move(app)), anyName_(anyName) {
  addStory();
  addApp();
  addCards();
  addTester();
  addPage();
}

void ConsoleResources::serve(const HttpRequest& request, const Reply& reply) const {
  if (!anyName_ && !isThisMachine(request.host)) {
    throw Refused{403, "foreign-name", "The console is called by the name of this machine."};
  }
  routes_.serve(request, reply);
}

void ConsoleResources::addStory() {
  routes_.add("GET", {"events"}, [this](const HttpRequest&, const Reply& reply) {
    const auto listener = std::make_shared<Listener>(listeners_, sandbox_);
    HttpAnswer answer;
    answer.events = [listener] { return listener->next(); };
    reply(std::move(answer));
  });
  routes_.add("GET", {"story"}, [this](const HttpRequest& request, const Reply& reply) {
    const auto story = sandbox_->journal().last(countIn(request));
    reply({200, {{"operations", jsonOf(story)}}});
  });
  routes_.add("GET", {"truth"}, [this](const HttpRequest&, const Reply& reply) {
    reply({200, truthOf(*sandbox_)});
  });
  routes_.add("GET", {"choices"}, [](const HttpRequest&, const Reply& reply) {
    reply({200, choices()});
  });
}

void ConsoleResources::addApp() {
  routes_.add("PUT", {"app", "guest"}, [this](const HttpRequest& request, const Reply& reply) {
    const auto body = parsedObject(request.body);
    requireKnownMembers(body, {"email"});
    app_->signIn(textIn(body, "email").value_or(""), replying(reply));
  });
  routes_.add("DELETE", {"app", "guest"},
              [this](const HttpRequest&, const Reply& reply) { app_->signOut(replying(reply)); });
  routes_.add("PUT", {"app", "network"}, [this](const HttpRequest& request, const Reply& reply) {
    const auto body = parsedObject(request.body);
    requireKnownMembers(body, {"on"});
    app_->setReachable(flagIn(body, "on"), replying(reply));
  });
  routes_.add("POST", {"app", "foreground"}, [this](const HttpRequest&, const Reply& reply) {
    app_->enterForeground(replying(reply));
  });
}

void ConsoleResources::addCards() {
  const std::vector<std::string> card{"app", "cards", "*"};
  routes_.add("POST", {"app", "cards"}, [this](const HttpRequest& request, const Reply& reply) {
    auto body = parsedObject(request.body);
    const auto entered = takeCard(body);
    const auto address = body.contains("billing_address")
                             ? addressOf(objectIn(body, "billing_address"))
                             : sandbox::EnteredAddress::make({});
    app_->add(entered, address, replying(reply));
  });
  routes_.add("PATCH", card, [this](const HttpRequest& request, const Reply& reply) {
    app_->update(request.path[2], addressOf(parsedObject(request.body)), replying(reply));
  });
  routes_.add("DELETE", card, [this](const HttpRequest& request, const Reply& reply) {
    app_->remove(request.path[2], replying(reply));
  });
}

void ConsoleResources::addTester() {
  const auto replyTruth = [this](const Reply& reply) { reply({200, truthOf(*sandbox_)}); };
  routes_.add("POST", {"faults"},
              [this, replyTruth](const HttpRequest& request, const Reply& reply) {
                armFault(*sandbox_, request);
                replyTruth(reply);
              });
  routes_.add("DELETE", {"faults"}, [this, replyTruth](const HttpRequest&, const Reply& reply) {
    sandbox_->faults().clear();
    replyTruth(reply);
  });
  routes_.add("POST", {"scenes"},
              [this, replyTruth](const HttpRequest& request, const Reply& reply) {
                makeScene(*sandbox_, request);
                replyTruth(reply);
              });
  routes_.add("POST", {"reset"},
              [this](const HttpRequest&, const Reply& reply) { app_->reset(replying(reply)); });
}

void ConsoleResources::addPage() {
  const auto serveFile = [](const HttpRequest& request, const Reply& reply) {
    const auto* file = findPageFile(request.path.empty() ? "" : request.path[0]);
    if (!file) throw Refused{404, "no-such-resource", "There is nothing at this path."};
    HttpAnswer answer;
    answer.content = file->content;
    answer.contentType = file->type;
    reply(std::move(answer));
  };
  routes_.add("GET", {}, serveFile);
  routes_.add("GET", {"*"}, serveFile);
}

}  // namespace hlv::services
