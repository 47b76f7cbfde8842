#include "Platform/Default/DefaultNotificationCenter.h"

#include <atomic>
#include <utility>

namespace hlv {

struct DefaultNotificationCenter::Observer {
  explicit Observer(Handler callback) : handler(std::move(callback)) {}
  const Handler handler;
  std::atomic<bool> ended{false};
};

class DefaultNotificationCenter::Entry final : public Observation {
 public:
  Entry(std::weak_ptr<DefaultNotificationCenter> center, std::string name,
        std::shared_ptr<Observer> observer)
      : center_(std::move(center)), name_(std::move(name)), observer_(std::move(observer)) {}

  ~Entry() override {
    observer_->ended = true;
    if (const auto center = center_.lock()) center->remove(name_, observer_);
  }

 private:
  const std::weak_ptr<DefaultNotificationCenter> center_;
  const std::string name_;
  const std::shared_ptr<Observer> observer_;
};

std::unique_ptr<Observation> DefaultNotificationCenter::observe(const NullableString& name,
                                                                Handler handler) {
  if (!name) return nullptr;
  auto observer = std::make_shared<Observer>(std::move(handler));
  {
    const std::lock_guard lock(mutex_);
    observers_[*name].push_back(observer);
  }
  return std::make_unique<Entry>(weak_from_this(), *name, std::move(observer));
}

void DefaultNotificationCenter::post(const Notification& notification) {
  if (!notification.name) return;
  std::vector<std::shared_ptr<Observer>> observers;
  {
    const std::lock_guard lock(mutex_);
    const auto found = observers_.find(*notification.name);
    if (found != observers_.end()) observers = found->second;
  }
  for (const auto& observer : observers) {
    if (!observer->ended) observer->handler(notification);
  }
}

void DefaultNotificationCenter::remove(const std::string& name,
                                       const std::shared_ptr<Observer>& observer) {
  const std::lock_guard lock(mutex_);
  auto& observers = observers_[name];
  std::erase(observers, observer);
  if (observers.empty()) observers_.erase(name);
}

}  // namespace hlv
