import {isObject, listOr, numberOr, objectOr, textOr} from './format.js';
import {call, isInt32, isPlain, isText} from './scenario_steps.js';
import {asksForConsents, asksForIdentity, identifiersOf, idOf} from './scenario_user.js';

// What lay on the device when a session began, and the device itself.

const connections = {wifi: 'wifi', celular: 'cellular', none: 'none', unknown: 'unknown'};

/** What the library had stored before, as far as the session shows it. */
export function presetOf(session) {
  const stop = objectOr(session.stop?.payload);
  const defaults = {};
  if (session.start ? objectOr(session.start.payload).first_run !== true : stop.is_first_run === false) defaults.ORBINEL_FIRST_SESSION = true;
  if (!session.startedBy) Object.assign(defaults, identityOf(session, stop));
  if (wasTestDevice(session, stop)) defaults.OrbinelDebugCheck = '1';
  const left = leftByTheExtension(stop);
  const cache = cachedContents(session, stop);
  const preset = {...(Object.keys(defaults).length > 0 ? {defaults} : {}), ...(left ? {app_group: {name: 'group.acme', values: left}} : {}),
                  ...(Object.keys(cache).length > 0 ? {content_cache: cache} : {})};
  return Object.keys(preset).length > 0 ? {preset} : {};
}

/**
 * Nothing is asked for again that is known: an ID, identifiers, a consent. Consents are asked for while the start is on its
 * way, so that either may arrive first.
 */
function identityOf(session, stop) {
  if (!session.start) return {};
  const earlier = session.requests.filter(request => request.id < session.start.id);
  const asked = earlier.find(asksForIdentity);
  const identifiers = asked ? identifiersOf(asked) : loginsIn(session) ? null : textsOf(stop.user_identifiers);
  return {...(!asked && idOf(session) ? {ORBINEL_ID: idOf(session)} : {}),
          ...(identifiers && Object.keys(identifiers).length > 0 ? {ORBINEL_SET_USER_IDENTIFIER: identifiers} : {}),
          ...(session.requests.some(asksForConsents) || earlier.some(isConsentSet) ? {} : {OrbinelGDPRConsent: true})};
}

const isConsentSet = request => request.path.endsWith('/consent/set');
const loginsIn = session => session.requests.some(request => request.id > session.start.id && identifiersOf(request));
const textsOf = value => Object.fromEntries(Object.entries(objectOr(value)).filter(([, text]) => isText(text)));

function wasTestDevice(session, stop) {
  return Object.keys(objectOr(stop.content_variables)).length > 0 && !session.requests.some(request => request.path === '/api/v1/test_device/add');
}

/** What the person did with a push outside the application. */
function leftByTheExtension(stop) {
  const log = listOr(stop.interactive_logs).find(isObject);
  if (!log) return null;
  const keys = ['orbinelInteractivePushSeen', 'orbinelCarouselID', 'orbinelCarouselCampId'];
  return Object.fromEntries(keys.filter(key => isPlain(log[key])).map(key => [key, log[key]]));
}

/** Variables that were read but did not come with this start: they came earlier. */
function cachedContents(session, stop) {
  const delivered = new Set(variablesOf(session.answer).map(one => one.variable_name));
  return Object.fromEntries(Object.entries(objectOr(stop.content_logs)).filter(([name, log]) => name && isObject(log) && !delivered.has(name))
    .map(([name, log]) => [name, {content_id: numberOr(log.content_id, 0), variant_id: numberOr(log.variant_id, 0), variable_name: name, new_value: ''}]));
}

function variablesOf(answer) {
  return listOr(answer.contents).filter(isObject).flatMap(content => listOr(content.variables)).filter(isObject);
}

// --- The device ---

export function deviceOf(session) {
  const known = objectOr(objectOr(session.stop?.payload).device_attributes);
  const early = objectOr(objectOr(session.start?.payload).device_info);
  const texts = {app_version: known.app_version ?? early.app_version, os_version: known.os_version ?? early.os_version, model: known.model,
                 package_name: known.package_name, language: known.device_language, timezone: known.timezone, idfv: known.idfv, idfa: known.idfa,
                 carrier: known.carrier === 'N/A' ? undefined : known.carrier, connection: connections[early.connection]};
  const device = Object.fromEntries(Object.entries(texts).filter(([, value]) => isText(value) && value));
  if (early.push_enabled === true) device.push_permission = 'granted';
  if (early.location_enabled === true) device.location_enabled = true;
  if (Number.isInteger(early.battery) && early.battery >= 0 && early.battery <= 100) device.battery = early.battery;
  return Object.keys(device).length > 0 ? {device} : {};
}

/** What the application told the library about the device, what a push left, and the contents that it read. */
export function deviceSteps(stop) {
  const known = objectOr(stop.device_attributes);
  const token = textOr(known.device_token);
  return [
    ...(/^([0-9a-f]{2}){1,64}$/i.test(token) ? [{device_token: {$bytes: token.toUpperCase()}}] : []),
    ...(known.is_ip_disabled === true ? [call('enableIpCollection:', false)] : []),
    ...(known.is_location_disabled === true ? [call('enableLocationCollection:', false)] : []),
    ...(known.carrier === 'N/A' ? [call('enableCarrierCollection:', false)] : []),
    ...(isText(known.idfa) && known.idfa ? [call('enableIDFACollection:', true)] : []),
    ...interactionSteps(stop)];
}

function interactionSteps(stop) {
  const log = listOr(stop.interactive_logs).find(isObject);
  if (!log) return [];
  const campaign = Object.fromEntries(['camp_id', 'camp_type', 'variant_id', 'journey_id'].filter(key => isPlain(log[key])).map(key => [key, log[key]]));
  return [call('trackInteractiveLogWithUserInfo:', {aps: {}, ...campaign})];
}

// --- Contents ---

/** A read of every variable that the record names: by its registration where there is one, else by the value delivered. */
export function contentReads(session, stop) {
  const registered = objectOr(stop.content_variables);
  const values = new Map(variablesOf(session.answer).map(one => [one.variable_name, one.new_value]));
  const names = new Set([...Object.keys(registered), ...Object.keys(objectOr(stop.content_logs))]);
  return [...names].map(name => {
    const {data_class: kind, data_type: type, default_value: fallback} = objectOr(registered[name]);
    return read(name, kind ?? kindOf(values.get(name)), fallback, type === 1 ? 1 : 0);
  });
}

/** Those of variables that this start withdrew. */
export function readsBeforeTheStart(session, stop) {
  const withdrawn = new Set(listOr(session.answer.passive_variables));
  return contentReads(session, stop).filter(one => withdrawn.has(one.args[0]) && Object.hasOwn(objectOr(stop.content_logs), one.args[0]));
}

function kindOf(value) { return typeof value === 'boolean' ? 2 : isInt32(value) ? 1 : 0; }

function read(name, kind, fallback, type) {
  if (kind === 1) return call('getContentIntWithName:defaultInt:dataType:', name, isInt32(Number(fallback)) ? Number(fallback) : 0, type);
  if (kind === 2) return call('getContentBoolWithName:defaultBool:dataType:', name, fallback === '1', type);
  return call('getContentStringWithName:defaultString:dataType:', name, textOr(fallback), type);
}
