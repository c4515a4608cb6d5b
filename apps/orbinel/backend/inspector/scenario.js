import {isObject, listOr, numberOr, objectOr, textOr} from './format.js';

// A session as a scenario that `orbinel play` accepts: its start, what the application did, its stop.

const productEvents = {
  product_detail_page_view: product => call('visitProductDetailPageWithProduct:', product),
  item_added_to_cart: product => call('itemAddedToCartWithProduct:', product),
  item_added_to_wishlist: product => call('itemAddedToWishlistWithProduct:', product),
  cart_page_view: product => call('visitCartPageWithProducts:', [product]),
  wishlist_page_view: product => call('visitWishlistWithProducts:', [product]),
  confirmation_page_view: (product, parameters) => call('itemPurchasedWithSaleID:product:', textOr(parameters.e_guid), product),
};
const plainEvents = {
  homepage_view: () => call('visitHomepage'),
  listing_page_view: parameters => call('visitListingPageWithTaxonomy:', listOr(parameters.ta).filter(isText)),
  item_removed_from_cart: parameters => call('itemRemovedFromCartWithProductID:', textOr(parameters.pid)),
  item_removed_from_wishlist: parameters => call('itemRemovedFromWishlistWithProductID:', textOr(parameters.pid)),
  cart_cleared: () => call('cartCleared'),
  wishlist_clear: () => call('wishlistCleared'),
};
// The library records these itself.
const ownEvents = new Set(['session_start', 'inapp_seen']);

const setters = {na: 'setName', su: 'setSurname', la: 'setLanguage', lo: 'setLocale', fid: 'setFacebookID', tid: 'setTwitterID',
                 mem: 'setEmail', mpn: 'setPhoneNumber', eo: 'setEmailOptin', so: 'setSMSOptin', wbo: 'setWhatsappOptin', ag: 'setAge'};
const genders = {male: 0, female: 1, other: 2};
const farthest = 30 * 86400;  // seconds between two events that are played
const latest = 4e9;           // seconds since 1970

const isText = value => typeof value === 'string';
const isInt32 = value => Number.isInteger(value) && Math.abs(value) < 2 ** 31;

function call(operation, ...args) { return {call: operation, ...(args.length > 0 || operation.endsWith(':') ? {args} : {})}; }

export function scenarioOf(session) {
  const stop = objectOr(session.stop?.payload);
  const told = [session.start?.time, session.stop?.time].find(time => time >= 0 && time < latest);
  const begin = Math.floor(told ?? (session.start ?? session.stop).at);
  const steps = [
    call('initWithLaunchOptions:partnerName:appGroup:customEndpoint:', null, session.partner || 'acme', 'group.acme', '${endpoint}'),
    {notify: 'UIApplicationDidBecomeActiveNotification'}, {settle: 5}];
  steps.push(...userSteps(stop));
  const end = addEvents(steps, eventsOf(session), begin);
  if (session.stop) {
    addPause(steps, numberOr(stop.timestamp, end) - end);
    steps.push({notify: 'UIApplicationDidEnterBackgroundNotification'}, {settle: 5},
               {expect: {in: 'request', count: 1, where: {'/url': {contains: 'session/stop'}}}});
  }
  return {name: `a session of ${session.partner || 'nobody'}${session.id ? ', ' + session.id : ''}`, clock: {start: begin},
          ...deviceOf(session), steps};
}

/** Those of the stop; of a running session, what the wizard was told. */
function eventsOf(session) {
  if (session.stop) return listOr(objectOr(session.stop.payload).custom_events).filter(isObject);
  return session.feeds.filter(feed => isObject(feed.data) && isText(feed.data.event_name)).map(feed => ({
    ...feed.data, event_params: Object.fromEntries(listOr(feed.data.event_params).filter(isObject).map(one => [one.name, one.value]))}));
}

function deviceOf(session) {
  const known = objectOr(objectOr(session.stop?.payload).device_attributes);
  const facts = {app_version: known.app_version, os_version: known.os_version, language: known.device_language, timezone: known.timezone};
  const device = Object.fromEntries(Object.entries(facts).filter(([, value]) => isText(value) && value));
  return Object.keys(device).length > 0 ? {device} : {};
}

// --- Events ---

function addEvents(steps, events, begin) {
  const products = new Map();
  let now = begin;
  for (const event of events) {
    const name = textOr(event.event_name);
    if (!name || ownEvents.has(name)) continue;
    now += addPause(steps, numberOr(event.timestamp, now) - now);
    steps.push(...eventSteps(name, objectOr(event.event_params), products));
  }
  return now;
}

/** Gives the seconds that pass. */
function addPause(steps, seconds) {
  const whole = Math.min(farthest, Math.floor(seconds));
  if (!(whole > 0)) return 0;
  steps.push({advance: whole});
  return whole;
}

function eventSteps(name, parameters, products) {
  if (Object.hasOwn(plainEvents, name)) return [plainEvents[name](parameters)];
  if (Object.hasOwn(productEvents, name) && isProduct(parameters)) {
    const {reference, steps} = productSteps(parameters, products);
    return [...steps, productEvents[name]({$ref: reference}, parameters)];
  }
  return [{...call('tagEvent:', name), then: [...parameterCalls(parameters), {call: 'build', args: []}]}];
}

function parameterCalls(parameters) {
  return Object.entries(parameters).flatMap(([name, value]) => {
    if (isText(value)) return [call('addParameterWithString', name, value)];
    if (typeof value === 'boolean') return [call('addParameterWithBoolean', name, value)];
    if (isInt32(value)) return [call('addParameterWithInt', name, value)];
    if (typeof value === 'number') return [call('addParameterWithDouble', name, value)];
    if (Array.isArray(value) && value.every(isText)) return [call('addParameterWithArray', name, value)];
    return [];
  });
}

function isProduct(parameters) {
  return [parameters.pid, parameters.na, parameters.piu, parameters.cu].every(isText) && typeof parameters.up === 'number' && Array.isArray(parameters.ta);
}

function productSteps(parameters, products) {
  const quantity = isInt32(parameters.qu) ? parameters.qu : 1;
  const key = JSON.stringify([parameters.pid, parameters.na, parameters.ta, parameters.piu, parameters.up, parameters.cu, quantity]);
  if (products.has(key)) return {reference: products.get(key), steps: []};
  const reference = 'product-' + (products.size + 1);
  products.set(key, reference);
  return {reference, steps: [{
    ...call('createNewProductWithID:name:taxonomy:imageURL:price:currency:', parameters.pid, parameters.na, parameters.ta.filter(isText),
            parameters.piu, parameters.up, parameters.cu),
    as: reference, ...(quantity !== 1 ? {then: [call('setQuantity', quantity)]} : {})}]};
}

// --- The user ---

function userSteps(stop) {
  const calls = [];
  for (const [code, value] of Object.entries(objectOr(stop.user_attributes))) {
    if (code === 'ge' && Object.hasOwn(genders, value)) calls.push(call('setGender', genders[value]));
    else if (code === 'bi' && !Number.isNaN(Date.parse(value))) calls.push(call('setBirthday', {$date: Date.parse(value) / 1000}));
    else if (Object.hasOwn(setters, code) && fits(setters[code], value)) calls.push(call(setters[code], value));
  }
  for (const [name, value] of Object.entries(objectOr(stop.custom_attributes))) calls.push(...customCalls(name, value));
  return calls.length > 0 ? [{...call('getCurrentUser'), then: calls}] : [];
}

function fits(setter, value) {
  if (setter === 'setAge') return isInt32(value);
  return setter.endsWith('Optin') ? typeof value === 'boolean' : isText(value);
}

function customCalls(name, value) {
  if (isText(value)) return [call('setCustomAttributeWithString', name, value)];
  if (typeof value === 'boolean') return [call('setCustomAttributeWithBoolean', name, value)];
  if (isInt32(value)) return [call('setCustomAttributeWithInt', name, value)];
  if (typeof value === 'number') return [call('setCustomAttributeWithDouble', name, value)];
  if (Array.isArray(value) && value.every(isText)) return [call('setCustomAttributeWithArray', name, value)];
  return [];
}
