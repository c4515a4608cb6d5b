import {isObject, listOr, objectOr, textOr} from './format.js';
import {call, isInt32, isText, typedCall} from './scenario_steps.js';

// Who the user of a session is: attributes, logins, consents.

const setters = {na: 'setName', su: 'setSurname', la: 'setLanguage', lo: 'setLocale', fid: 'setFacebookID', tid: 'setTwitterID',
                 mem: 'setEmail', mpn: 'setPhoneNumber', eo: 'setEmailOptin', so: 'setSMSOptin', wbo: 'setWhatsappOptin', ag: 'setAge'};
const genders = {male: 0, female: 1, other: 2};
const greatestAttribute = 99_999_999;  // of whole numbers from 1 on, which have an operation of their own
const identityPath = '/api/identity/v3/get';
const consentPath = '/api/v1/privacy/gdpr/consent/';

/** Fetched once: each fetching empties the attributes. */
export const user = 'user';

export function attributeSteps(session, stop) {
  const calls = withdrawnOptins(session, stop);
  calls.push(...listOr(stop.removed_attributes).filter(isText).map(name => call('unsetCustomAttribute', name)));
  for (const [code, value] of Object.entries(objectOr(stop.user_attributes))) {
    if (code === 'ge' && Object.hasOwn(genders, value)) calls.push(call('setGender', genders[value]));
    else if (code === 'bi' && !Number.isNaN(Date.parse(value))) calls.push(call('setBirthday', {$date: Date.parse(value) / 1000}));
    else if (Object.hasOwn(setters, code) && fits(setters[code], value)) calls.push(call(setters[code], value));
  }
  for (const [name, value] of Object.entries(objectOr(stop.custom_attributes))) calls.push(...customCall(name, value));
  return calls.map(one => ({...one, on: user}));
}

/** Those that were in force at the start, and no more at the stop. */
function withdrawnOptins(session, stop) {
  const before = objectOr(objectOr(session.start?.payload).device_info);
  const after = objectOr(stop.device_attributes);
  return [['push_enabled', 'setPushOptin'], ['location_enabled', 'setLocationOptin']]
    .filter(([name]) => before[name] === true && after[name] === false).map(([, operation]) => call(operation, false));
}

function fits(setter, value) {
  if (setter === 'setAge') return isInt32(value);
  return setter.endsWith('Optin') ? typeof value === 'boolean' : isText(value);
}

function customCall(name, value) {
  const outside = isInt32(value) && (value < 1 || value > greatestAttribute);
  return outside ? [call('setCustomAttributeWithDouble', name, value)] : typedCall('setCustomAttributeWith', name, value);
}

// --- Identity ---

export function identifiersOf(request) {
  const entries = Object.entries(objectOr(objectOr(request?.payload).identifiers)).filter(([, value]) => isText(value));
  return request?.path === identityPath && entries.length > 0 ? Object.fromEntries(entries) : null;
}

export function asksForIdentity(request) { return request.path === identityPath; }

export function loginSteps(identifiers, name) {
  const adders = {em: 'addEmail', pn: 'addPhoneNumber', uuid: 'addUserID'};
  const then = Object.entries(identifiers).flatMap(([key, value]) => {
    if (Object.hasOwn(adders, key)) return [call(adders[key], value)];
    return key.startsWith('c_') ? [call('addCustomIdentifier', key.slice(2), value)] : [];
  });
  return [{...call('new:OrbinelIdentifiers'), as: name, then}, {...call('login:', {$ref: name}), on: user}, {settle: 5}];
}

// --- Consents ---

/** Whether the library asks the backend for them, which it does until the application has set one. */
export function asksForConsents(request) { return request.path === consentPath + 'get'; }

/** The call of each consent that the application set; not of those that the library adopted from the backend's answer. */
export function consentCalls(requests) {
  const adopted = new Set();
  const calls = new Map();
  for (const request of requests) {
    if (asksForConsents(request)) { adopted.add('gdpr_consent').add('mobile_gdpr_consent'); continue; }
    if (request.path !== consentPath + 'set' || !isObject(request.payload)) continue;
    for (const [name, operation] of [['gdpr_consent', 'setGDPRConsent:'], ['mobile_gdpr_consent', 'setMobileGDPRConsent:']]) {
      if (typeof request.payload[name] !== 'boolean' || adopted.delete(name)) continue;
      calls.set(request, call(operation, request.payload[name]));
    }
  }
  return calls;
}

export function idOf(session) {
  const id = textOr(objectOr(session.start?.payload).orbinel_id) || textOr(objectOr(session.stop?.payload).orbinel_id);
  return /^[a-zA-Z0-9][a-zA-Z0-9.-]*$/.test(id) ? id : '';
}
