// How cards and addresses are written.

export const expiry = (card) => `${card.expiry_month}/${card.expiry_year}`;
export const digits = (card) => (card.last_four_digits ?? card.masked_number).slice(-4);
export const nameOf = (card) => `${card.brand} •••• ${digits(card)}`;

export const addressFields = [
  ['street', 'Street'],
  ['zip', 'Postcode'],
  ['city', 'City'],
  ['country_code', 'Country code'],
  ['business_name', 'Business name'],
];

/** "Harbour Road 1, 20457, Hamburg, DE", or nothing. */
export function addressLine(address) {
  const parts = ['business_name', 'street', 'zip', 'city', 'country_code'];
  return parts.map((key) => address[key]).filter(Boolean).join(', ');
}
