#include "Tests/Explorer/ReferenceModel.h"

#include <algorithm>
#include <utility>

namespace hlv::testing {
namespace {

using Text = std::string;

const Text managerMethod = "-[HLVSDKPaylevenPaymentInstrumentManager ";
const Text addFirstMethod =
    managerMethod + "addFirstPaymentInstrument:billingAddress:forGuest:completion:]";
const Text addFirstToPaylevenMethod =
    managerMethod + "addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:]";
const Text addNewBlock =
    managerMethod + "addNewPaymentInstrument:billingAddress:forGuest:completion:]_block_invoke";
const Text processMethod =
    managerMethod + "processAddedPaymentInstrument:paylevenToken:completion:]";
const Text deleteMethod =
    managerMethod + "deletePaymentInstrumentWithID:useCase:fromGuest:completion:]";
const Text synchronizeMethod =
    "-[HLVSDKPaylevenPaymentInstrumentsSynchronizer "
    "synchronizePaymentInstrumentsForGuest:completion:]";
const Text synchronizeBlock = synchronizeMethod + "_block_invoke";

const Text none = "none";
const Text noConnection = "code 1 in 'URL', message nil";
const Text failedToAdd = "Failed to add new payment instrument. ";
const Text notIdentified = "Added instrument to external payment system doesn't have identifier";

Text shown(const NullableString& text) { return text.value_or("nil"); }
Text wrapped(const Text& error) { return "provider(" + error + ")"; }
Text required(const Text& name, const Text& message, const Text& function, const Text& file) {
  return "required '" + name + "', message " + (message == "nil" ? message : "'" + message + "'") +
         ", by " + function + " in Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+" + file +
         ".cpp";
}
/// The name of a function, or of the block that it posts.
Text by(const Text& method, bool posted) { return posted ? method + "_block_invoke" : method; }

template <class Fake, class T>
std::vector<std::shared_ptr<Fake>> all(const NullableList<T>& list) {
  std::vector<std::shared_ptr<Fake>> fakes;
  for (const auto& one : list.value_or(List<T>())) {
    fakes.push_back(std::static_pointer_cast<Fake>(one));
  }
  return fakes;
}

/// The last usable instrument of the list with the card's digits and brand, and with the expiry.
std::shared_ptr<FakeInstrument> lastUsable(const Answer& answer, const NullableString& month = {},
                                           const NullableString& year = {}) {
  std::shared_ptr<FakeInstrument> found;
  for (const auto& one : all<FakeInstrument>(answer.instruments)) {
    if (one->stateNumber == 0 && endsWith(one->number, "1111") && same(one->brand, "visa") &&
        (!month || same(one->month, month)) && (!year || same(one->year, year))) {
      found = one;
    }
  }
  return found;
}

}  // namespace

std::optional<ReferenceModel::Violation> ReferenceModel::examine(const Scenario& scenario,
                                                                 const History& history) {
  ReferenceModel model(scenario, history);
  if (scenario.operations.front().kind != OperationKind::enable) model.bringToLife();
  return model.follow();
}

void ReferenceModel::start(OperationKind kind, const Asking& who) {
  const auto kept = std::pair(manager_, synchronizer_);
  switch (kind) {
    case OperationKind::enable:
      return enable(*who.request);
    case OperationKind::add:
      return manager_ ? add(who) : void();
    case OperationKind::remove:
      return manager_ ? remove(who) : void();
    case OperationKind::update:
      return manager_ ? update(who) : void();
    case OperationKind::confirm:
      return manager_ ? confirm(who, who.request->confirmToken, nullptr) : void();
    case OperationKind::fetchAll:
      return synchronizer_ ? fetchAll(who, nullptr) : void();
    case OperationKind::synchronize:
      return synchronizer_ ? synchronize(who) : void();
  }
}

// Enabling: the last entry of the kit's own class counts; the first fault is the one that is
// reported, and then nothing is created. The first enabling that succeeds is the only one that
// does anything: it reads the guest once and registers the key.
void ReferenceModel::enable(const Request& request) {
  const Text* last = nullptr;
  for (const auto& key : request.kits) {
    if (key != "another kit") last = &key;
  }
  const Text must = "assert \"Configuration for PaylevenKit must ";
  if (!last) return expect("assert \"Configuration must have HLVSDKPaylevenKit in kits array\"");
  if (*last == "nothing") {
    return expect(must + "be kind of HLVSDKPaylevenKitConfiguration class\"");
  }
  if (*last == "no key") return expect(must + "have payment key\"");
  if (enabledOnce_) return;
  expect("host current guest");
  expect("provider register '" + *last + "'");
  bringToLife();
}

// Adding: reachability is read first, then the card checks itself; an invalid card is reported with
// its own error even when there is no connection. A guest with a token has had a card before.
void ReferenceModel::add(const Asking& who) {
  expect("network asked");
  connected_ = (network_ & 0xff) != 0;
  if (!who.request->card) return complete(who, "none, none, none");
  expect(who.card() + " checks itself");
  if (!who.request->valid) {
    return complete(who, "none, none, error " + std::to_string(who.operation));
  }
  if (!connected_) {
    return completeBuilt(who, [this](bool) { return "none, none, " + made(noConnection); });
  }
  const bool hasToken = who.request->guest && guestToken_ && !guestToken_->empty();
  hasToken ? addFurther(who) : addFirst(who);
}

// A first card: the provider makes the token with it, the list names its instrument, and then the
// backend stores the token and registers the card, neither waiting for the other. The first error
// wins; a card that came before it stays. The manager is not kept while anybody answers.
void ReferenceModel::addFirst(const Asking& who) {
  const auto register_ = [=, this](const NullableString& token) {
    const auto kept = who.manager.lock();
    if (!kept) return;
    struct Registered {
      Text card = none, error = none;
    };
    const auto answers = std::make_shared<Registered>();
    const auto both = std::make_shared<Join>();
    both->enter();
    call("backend update guest token=" + *token, [=](const Brought& brought) {
      if (answers->error == none) answers->error = brought.error;
      both->leave();
    });
    both->enter();
    call("backend add card for " + who.guest("nil") + " token=" + *token + ", " + who.card() +
             " at the address",
         [=](const Brought& brought) {
           if (answers->error == none) answers->error = brought.error;
           if (answers->error == none) answers->card = brought.card();
           both->leave();
         });
    both->whenEmpty([=, this] {
      postToMainQueue([=, this] {
        complete(who, who.guest("none") + ", " + answers->card + ", " + answers->error);
      });
    });
  };
  const auto added = [=, this](const NullableString& token, const Instrument& instrument,
                               const Text& error) {
    if (error != none) return complete(who, "none, none, " + error);
    if (!instrument || !instrument->id) {
      return completeBuilt(who, [this](bool posted) {
        const auto method = by(addFirstMethod, posted);
        return "none, none, " + made(required("identifier", notIdentified, method, "AddFirst"));
      });
    }
    expect(who.card() + " is " + *instrument->id);
    register_(token);
  };

  call("provider create token for " + who.guest("nil") +
           " with new[..1111 09/2031 cvv of 3 A. Guest] use case entered",
       [=, this](const Brought& brought) {
         const auto kept = who.manager.lock();
         const auto token = brought.answer.token;
         if (!brought.failed() && token) return kept ? confirm(who, token, added) : void();
         if (!brought.failed()) expect("assert parameter userToken: nil");
         onMainThread([=, this, failed = brought.failed(), error = brought.error](bool posted) {
           const auto method = by(addFirstToPaylevenMethod, posted);
           added({}, {},
                 made(failed ? wrapped(error) : required("userToken", "nil", method, "AddFirst")));
         });
       });
}

// A further card: under the guest's token, without a join. What fails at the provider is logged;
// what the backend says of the card is reported, except its error: kept for compatibility.
void ReferenceModel::addFurther(const Asking& who) {
  const Text token = *guestToken_;
  const auto added = [=, this](const NullableString&, const Instrument& instrument,
                               const Text& error) {
    const auto kept = who.manager.lock();
    if (error != none) {
      log(1, failedToAdd + "%@", error, addNewBlock);
      return complete(who, "none, none, " + error);
    }
    if (!instrument || !instrument->id) {
      log(1, failedToAdd + notIdentified, std::nullopt, addNewBlock);
      return completeBuilt(who, [this](bool) {
        return "none, none, " + made(required("identifier", notIdentified, addNewBlock, "AddNew"));
      });
    }
    expect(who.card() + " is " + *instrument->id);
    if (!kept) return;
    call("backend add card for guest token=" + token + ", " + who.card() + " at the address",
         [=, this](const Brought& brought) {
           complete(who, brought.guest() + ", " + brought.card() + ", none");
         });
  };

  call("provider add new[..1111 09/2031 cvv of 3 A. Guest] under " + token + " use case entered",
       [=, this](const Brought& brought) {
         const auto kept = who.manager.lock();
         if (!brought.failed()) return kept ? confirm(who, token, added) : void();
         onMainThread(
             [=, this, error = brought.error](bool) { added({}, {}, made(wrapped(error))); });
       });
}

// Confirming: the provider's answer to an add names no instrument, so the list under the token is
// searched for the last usable one with the card's digits, brand and expiry. Finding none is no
// error here. The manager is not kept meanwhile.
void ReferenceModel::confirm(const Asking& who, const NullableString& token, Confirmed then) {
  if (!then && who.request->completion) {
    then = [=, this](const NullableString& completed, const Instrument& found, const Text& error) {
      const Text instrument = !found ? none : found->id.value_or("unidentified");
      completeHere(who, completed.value_or(none) + ", " + instrument + ", " + error);
    };
  }
  if (!who.request->card || !token) {
    const Text argument = who.request->card ? "paylevenToken" : "paymentInstrument";
    expect("assert parameter " + argument + ": nil");
    if (!then) return;
    return onMainThread([=, this](bool posted) {
      then(token, nullptr, made(required(argument, "nil", by(processMethod, posted), "Confirm")));
    });
  }
  call("provider list " + *token + " use case entered", [=, this](const Brought& brought) {
    const bool missing = !brought.failed() && !brought.answer.instruments;
    if (missing) expect("assert parameter paylevenInstruments: nil");
    if (!then) return;
    const auto found = brought.failed() ? nullptr : lastUsable(brought.answer, "09", "2031");
    onMainThread([=, this, error = brought.failed() ? wrapped(brought.error) : none](bool) {
      then(token, found, error == none ? none : made(error));
    });
  });
}

// Deleting: reachability is read first; then the first thing that is missing is reported, and the
// connection counts last. The backend goes first, and its guest is the one that is reported and
// whose token the provider gets. A list that fails is not reported: kept for compatibility. The
// manager is kept from the backend's answer to the list's.
void ReferenceModel::remove(const Asking& who) {
  expect("network asked");
  connected_ = (network_ & 0xff) != 0;
  const auto refuse = [&](const Text& asserted, const Text& reported) {
    expect("assert parameter " + asserted + ": nil");
    completeBuilt(who, [=, this](bool posted) {
      return "none, " + made(required(reported, "nil", by(deleteMethod, posted), "Delete"));
    });
  };
  const auto& request = *who.request;
  if (!request.guest || !guestToken_) return refuse("guest.paylevenToken", "paymentToken");
  if (!request.id) return refuse("halvoID", "halvoID");
  if (!request.useCase) return refuse("useCase", "useCase");
  if (*request.id != "card-1") {
    const Text message = "Given guest must have credit card with the given halvoID";
    return complete(who, "none, " + made(required("existedCard", message, deleteMethod, "Delete")));
  }
  if (!connected_) {
    return completeBuilt(who, [this](bool) { return "none, " + made(noConnection); });
  }

  call("backend delete card-1 of guest", [=, this](const Brought& deleted) {
    if (deleted.failed()) return complete(who, "none, " + deleted.error);
    const auto kept = who.manager.lock();
    if (!kept) return;
    const auto guest = deleted.guest();
    const auto token = deleted.answer.guest ? shown(deleted.answer.guest->token) : "nil";
    const Text useCase = *who.request->useCase;
    call("provider list " + token + " use case " + useCase, [=, this, keptMeanwhile = kept](
                                                                const Brought& listed) {
      if (!listed.answer.instruments) expect("assert parameter paylevenInstruments: nil");
      const auto found = lastUsable(listed.answer);
      if (!found) return complete(who, guest + ", none");
      call("provider remove " + shown(found->id) + " from " + useCase + " of " + token,
           [=, this](const Brought& removed) {
             complete(who, guest + ", " + (removed.failed() ? made(wrapped(removed.error)) : none));
           });
    });
  });
}

// Updating: straight to the backend, with the caller's completion as it is: no check, no provider,
// on whatever thread the backend answers and as often as it does.
void ReferenceModel::update(const Asking& who) {
  const auto completed = [=, this](const Brought& brought) {
    completeHere(who, brought.guest() + ", " + brought.card() + ", " + brought.error);
  };
  call("backend update card-1 of guest", completed, Replies::always);
}

/// What fetches brought; of several errors the last one counts.
struct ReferenceModel::Fetched {
  std::vector<std::pair<Text, Instrument>> pairs;
  std::vector<std::shared_ptr<FakeStoredCard>> cards;
  Text error = none;
};

// Synchronising: one run at a time; a request that comes meanwhile is dropped. The provider's three
// lists and the backend's cards are fetched at the same time, and compared on the serial queue. The
// synchroniser keeps itself until then.
void ReferenceModel::synchronize(const Asking& who) {
  const auto self = synchronizer_;
  if (*self) return;
  const Text cannot = "Can not synchronize payment instruments for guest ";
  if (!who.request->guest) {
    return expect("assert parameter guest: " + cannot + "if guest is nil");
  }
  if (!guestToken_) {
    return expect("assert parameter guest.paylevenToken: " + cannot + "without payleven token");
  }
  log(4, "Will start synchrozation between external payment system and halvo", std::nullopt,
      synchronizeMethod);
  *self = true;
  const auto fetched = std::make_shared<Fetched>();
  const auto fetches = std::make_shared<Join>();
  fetches->enter();
  fetches->enter();
  fetches->whenEmpty([=, this] { postToSerialQueue([=, this] { finish(who, *fetched, *self); }); });
  fetchAll(who, [=](const std::shared_ptr<Fetched>& lists) {
    (lists->error == none) ? void(fetched->pairs = lists->pairs)
                           : void(fetched->error = lists->error);
    fetches->leave();
  });
  call("backend fetch cards of guest", [=](const Brought& brought) {
    brought.failed() ? void(fetched->error = brought.error)
                     : void(fetched->cards = all<FakeStoredCard>(brought.answer.cards));
    fetches->leave();
  });
}

// Fetching all instruments: three lists at once, gathered in the order of the answers. One that
// fails fails them all, and the last error is the one that counts.
void ReferenceModel::fetchAll(const Asking& who,
                              std::function<void(const std::shared_ptr<Fetched>&)> then) {
  if (!then) {
    then = [=, this](const std::shared_ptr<Fetched>& fetched) {
      if (fetched->error != none) return completeHere(who, "no list, " + fetched->error);
      Text list;
      for (const auto& [useCase, instrument] : fetched->pairs) {
        list += useCase + " " + instrument->id.value_or("unidentified") + ", ";
      }
      completeHere(who, list + none);
    };
  }
  const auto fetched = std::make_shared<Fetched>();
  const auto lists = std::make_shared<Join>();
  for (const Text useCase : {"private", "business", "default"}) {
    lists->enter();
    const Text token = who.request->guest ? shown(guestToken_) : "nil";
    call("provider list " + token + " use case " + useCase, [=, this](const Brought& brought) {
      if (brought.failed()) fetched->error = made(wrapped(brought.error));
      if (!brought.failed()) {
        for (const auto& one : all<FakeInstrument>(brought.answer.instruments)) {
          fetched->pairs.emplace_back(useCase, one);
        }
      }
      lists->leave();
    });
  }
  lists->whenEmpty([=, this] { postToMainQueue([=] { then(fetched); }); });
}

// The end of a synchronisation: what the backend does not know is removed, and success is reported
// as soon as the removals are asked for. Only this way clears the flag: after a failure, or when
// there was nothing to compare, every later request is dropped.
void ReferenceModel::finish(const Asking& who, const Fetched& fetched, bool& synchronizing) {
  const auto report = [&](const Text& results) {
    // The kit's own request has a completion too, one that does nothing.
    who.operation == byTheKit ? postToMainQueue([] {}) : complete(who, results);
  };
  if (fetched.error != none) {
    log(1, "Failed to synchronize payment instruments. %@", "developer " + fetched.error,
        synchronizeBlock);
    return report("failure, " + fetched.error);
  }
  if (fetched.pairs.empty()) {
    log(3, "Nothing to synchronize. No external payment instruments", std::nullopt,
        synchronizeBlock);
    return report("success, none");
  }
  for (const auto& pair : fetched.pairs) {
    const auto& [useCase, instrument] = pair;
    if (std::any_of(fetched.cards.begin(), fetched.cards.end(),
                    [&](const auto& card) { return standsFor(*card, *pair.second, pair.first); })) {
      continue;
    }
    log(4, "Will remove payment instrument with identifier %@ from external payment system",
        shown(instrument->id), synchronizeBlock);
    call("provider remove " + shown(instrument->id) + " from " + useCase + " of " +
             shown(guestToken_),
         [this](const Brought& removed) {
           const Text what = " remove payment instrument from external payment system";
           removed.failed() ? log(3, "Failed to" + what + ". %@", "localized " + removed.error,
                                  synchronizeBlock + "_2")
                            : log(3, "Successfully" + what, std::nullopt, synchronizeBlock + "_2");
         });
  }
  log(3, "Successfully synchronized external payment system with halvo", std::nullopt,
      synchronizeBlock);
  report("success, none");
  synchronizing = false;
}

// Notifications: the foreground and an authorisation synchronise, and so does a change of the
// network into a reachable state from another one. States count by their lowest eight bits. The
// guest is the one that the kit has known from the start.
void ReferenceModel::handle(const Posted& posted) {
  bool wanted = scenario_.authorized;
  if (posted.name == "authorization") wanted = posted.state > 0;
  if (posted.name == "reachability") {
    network_ = posted.state;
    const int state = posted.state & 0xff;
    if (!managerSeen_.expired()) connected_ = state != 0;
    wanted = wanted && state != 0 && state != (posted.previous & 0xff);
  }
  const bool hasToken = scenario_.kitGuestHasToken && guestToken_ && !guestToken_->empty();
  if (!kit_ || !synchronizer_ || !wanted || !hasToken) return;
  static const Request plain;
  const auto kept = synchronizer_;
  synchronize({byTheKit, &plain, {}});
}

}  // namespace hlv::testing
