// How cards and addresses are written.

export const expiry = (card) => `${card.expiry_month}/${card.expiry_year}`;
export const digits = (card) => (card.last_four_digits ?? card.masked_number).slice(-4);
export const nameOf = (card) => `${card.brand} •••• ${digits(card)}`;

export const addressFields = [
  ['business_name', 'Business name'],
  ['street', 'Street'],
  ['zip', 'Postcode'],
  ['city', 'City'],
  ['country_code', 'Country code'],
];

/** "Harbour Road 1, 20457, Hamburg, DE", or nothing. */
export const addressLine = (address) => addressFields.map(([name]) => address[name]).filter(Boolean).join(', ');
