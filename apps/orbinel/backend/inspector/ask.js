// Questions to the backend that have one answer each.

export const answerLimit = 10_000;  // milliseconds

/** The answer, or {error: a sentence}. */
export async function ask(method, path, body) {
  try {
    const response = await fetch(path, {method, body: body && JSON.stringify(body), signal: AbortSignal.timeout(answerLimit),
                                        headers: body ? {'Content-Type': 'application/json'} : {}});
    const answer = await response.json();
    return response.ok ? answer : {error: answer.error ?? `The backend answered ${response.status}.`, status: response.status};
  } catch (wrong) {
    return {error: noAnswer(wrong)};
  }
}

export function noAnswer(wrong) {
  return wrong.name === 'TimeoutError' ? 'The backend has not answered for ten seconds; where many pages of it are open, close some.'
                                       : 'The backend does not answer.';
}
