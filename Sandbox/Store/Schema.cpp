#include "Sandbox/Store/Schema.h"

namespace hlv::sandbox {

const char* const schema = R"sql(
CREATE TABLE settings (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE identifiers (kind TEXT PRIMARY KEY, made INTEGER NOT NULL) WITHOUT ROWID;

CREATE TABLE backend_guests (email TEXT PRIMARY KEY, payment_token TEXT) WITHOUT ROWID;
CREATE TABLE backend_cards (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  guest TEXT NOT NULL REFERENCES backend_guests (email),
  halvo_id TEXT NOT NULL UNIQUE,
  brand TEXT NOT NULL,
  last_four_digits TEXT NOT NULL,
  use_case TEXT NOT NULL,
  external_identifier TEXT,
  card_holder TEXT NOT NULL,
  expiry_month TEXT NOT NULL,
  expiry_year TEXT NOT NULL,
  street TEXT, city TEXT, country_code TEXT, zip TEXT, business_name TEXT
);
CREATE INDEX cards_of_guest ON backend_cards (guest);

CREATE TABLE provider_users (token TEXT PRIMARY KEY, email TEXT NOT NULL UNIQUE) WITHOUT ROWID;
CREATE TABLE provider_instruments (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  token TEXT NOT NULL REFERENCES provider_users (token),
  use_case TEXT NOT NULL,
  identifier TEXT UNIQUE,
  brand TEXT NOT NULL,
  masked_pan TEXT NOT NULL,
  card_holder TEXT NOT NULL,
  expiry_month TEXT NOT NULL,
  expiry_year TEXT NOT NULL,
  state INTEGER NOT NULL
);
CREATE INDEX instruments_of_user ON provider_instruments (token);

CREATE TABLE faults (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  operation TEXT NOT NULL,
  kind TEXT NOT NULL,
  remaining INTEGER,
  delay INTEGER NOT NULL,
  code INTEGER NOT NULL,
  use_case TEXT,
  spread INTEGER NOT NULL,
  probability INTEGER NOT NULL
);
CREATE TABLE firings (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  fault INTEGER NOT NULL,
  operation TEXT NOT NULL,
  kind TEXT NOT NULL
);

CREATE TABLE operations (number INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL);
CREATE TABLE events (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  operation INTEGER NOT NULL REFERENCES operations (number) ON DELETE CASCADE,
  speaker TEXT NOT NULL,
  listener TEXT NOT NULL,
  what TEXT NOT NULL,
  result TEXT NOT NULL,
  thread TEXT NOT NULL
);
CREATE INDEX events_of_operation ON events (operation);
)sql";

}  // namespace hlv::sandbox
