// The tables of a store. Private to the sandbox.
#pragma once

#include <cstdint>

namespace hlv::sandbox {

/// Marks a SQLite file as a sandbox's store.
inline constexpr std::int64_t applicationID = 0x484C5653;
/// Goes up with every change of the tables.
inline constexpr std::int64_t schemaVersion = 4;

/// Makes the tables. The backend's and the provider's are two services' and never meet: no
/// statement reads both.
inline constexpr const char* schema = R"sql(
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

CREATE TABLE backend_sessions (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  token TEXT NOT NULL UNIQUE,
  guest TEXT NOT NULL REFERENCES backend_guests (email)
);

CREATE TABLE provider_users (token TEXT PRIMARY KEY, email TEXT NOT NULL UNIQUE) WITHOUT ROWID;
CREATE TABLE provider_instruments (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  token TEXT NOT NULL REFERENCES provider_users (token),
  use_case TEXT NOT NULL,
  identifier TEXT UNIQUE,
  -- The digits that the mask leaves stand beside no others in the file.
  masked_pan TEXT NOT NULL,
  brand TEXT NOT NULL,
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
  probability INTEGER NOT NULL,
  distribution TEXT NOT NULL,
  status INTEGER,
  headers TEXT NOT NULL,
  bytes INTEGER,
  bytes_per_second INTEGER
);
CREATE INDEX faults_of_operation ON faults (operation);
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
  thread TEXT NOT NULL,
  at INTEGER NOT NULL
);
CREATE INDEX events_of_operation ON events (operation);

CREATE TABLE kept_replies (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  key TEXT NOT NULL UNIQUE,
  request TEXT NOT NULL,
  status INTEGER NOT NULL,
  body TEXT NOT NULL
);

CREATE TABLE requests (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  id TEXT NOT NULL UNIQUE,
  at INTEGER NOT NULL,
  status INTEGER NOT NULL,
  method TEXT NOT NULL,
  path TEXT NOT NULL,
  fault TEXT,
  microseconds INTEGER NOT NULL,
  caller TEXT NOT NULL,
  listener TEXT NOT NULL,
  request_bytes INTEGER NOT NULL,
  reply_bytes INTEGER NOT NULL,
  code TEXT,
  events TEXT NOT NULL
);
CREATE TABLE request_gaps (number INTEGER PRIMARY KEY AUTOINCREMENT, after INTEGER NOT NULL,
  found INTEGER NOT NULL);

-- Of the default sandbox's store alone.
CREATE TABLE sandboxes (
  id TEXT PRIMARY KEY,
  created INTEGER NOT NULL,
  expires INTEGER
) WITHOUT ROWID;
CREATE TABLE snapshots (
  id TEXT PRIMARY KEY,
  created INTEGER NOT NULL,
  sandbox TEXT NOT NULL
) WITHOUT ROWID;
)sql";

}  // namespace hlv::sandbox
